#pragma once

#include <optional>
#include <vector>

#include "places/place.hpp"

namespace lunoval::places {

// GNOME's world locations, read through a module loaded on first use, so that commands that
// never look a place up do not load its libraries. Throws when the module cannot be loaded.
const std::vector<Place>& cities();
std::optional<Place> nearestCity(double latitude, double longitude);

// What the module gives; it is built against libgweather.
struct WorldLocationsModule {
    std::vector<Place> (*cities)();
    std::optional<Place> (*nearestCity)(double latitude, double longitude);
};

}  // namespace lunoval::places

extern "C" const lunoval::places::WorldLocationsModule* lunovalWorldLocations();
