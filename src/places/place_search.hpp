#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "places/place.hpp"

namespace lunoval::places {

// Without case or accents: "São Paulo", "sao paulo" and "SAO PAULO" read the same.
std::string folded(std::string_view text);

// Cities named as `text` says first, then those whose name starts so. "Name, Country" or
// "Name, Region[, Country]" narrows the match.
std::vector<Place> search(const std::vector<Place>& cities, std::string_view text);

struct Resolution {
    std::optional<Place> place;     // the city meant
    std::vector<Place> candidates;  // otherwise, those it could be (none for an unknown name)
};

// The city a name means: the only one of that name, or among several the one whose time zone
// is named after it, as the zone database names each zone after its region's main city
// ("Paris" is Paris, France, not Paris, Texas).
Resolution resolve(const std::vector<Place>& cities, std::string_view text);

}  // namespace lunoval::places
