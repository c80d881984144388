#pragma once

#include <string>

namespace lunoval::places {

// A city of the world locations database.
struct Place {
    std::string name;
    std::string region;  // the state or province, empty where the country has none
    std::string country;
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    std::string timezone;

    // "Paris, France", "Paris, Texas, United States".
    [[nodiscard]] std::string description() const;
};

}  // namespace lunoval::places
