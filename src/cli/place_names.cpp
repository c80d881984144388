#include "cli/place_names.hpp"

#include "cli/device_options.hpp"
#include "places/place_search.hpp"
#include "places/world_locations.hpp"
#include "platform/number_text.hpp"

namespace lunoval::cli {

namespace {

constexpr std::size_t kMostListed = 12;

std::string listed(const std::vector<places::Place>& candidates) {
    std::string lines;
    for (std::size_t i = 0; i < candidates.size() && i < kMostListed; ++i) {
        lines += "\n  " + cityLine(candidates[i]);
    }
    if (candidates.size() > kMostListed) {
        lines += "\n  … and " + std::to_string(candidates.size() - kMostListed) + " more";
    }
    return lines;
}

}  // namespace

std::string cityLine(const places::Place& place) {
    return place.description() + "  " + doubleDescription(place.latitude) + ", " +
           doubleDescription(place.longitude) + "  " + place.timezone;
}

places::Place placeNamed(std::string_view name) {
    auto [place, candidates] = places::resolve(places::cities(), name);
    if (place) return std::move(*place);
    const std::string quoted = "'" + std::string(name) + "'";
    if (candidates.empty()) {
        throw UsageError("no place named " + quoted +
                         " in the world locations (give LAT,LNG, or try a nearby city)");
    }
    const auto& first = candidates.front();
    throw UsageError(quoted + " could be any of these; add the state or country, such as \"" +
                     first.name + ", " + (first.region.empty() ? first.country : first.region) +
                     "\":" + listed(candidates));
}

}  // namespace lunoval::cli
