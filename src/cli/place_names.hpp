#pragma once

#include <string_view>

#include "places/place.hpp"

namespace lunoval::cli {

// The city a name means ("Paris", "Quito, Ecuador", "Paris, Texas"). A usage error lists the
// candidates when the name could be several places, or says that none is known.
places::Place placeNamed(std::string_view name);

// "Paris, France  48.8667, 2.3333  Europe/Paris".
std::string cityLine(const places::Place& place);

}  // namespace lunoval::cli
