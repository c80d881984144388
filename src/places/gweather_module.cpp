// The world locations module: the one place that knows libgweather.
#include <libgweather/gweather.h>

#include <cmath>
#include <memory>

#include "places/world_locations.hpp"

namespace lunoval::places {

namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using LocationHandle = std::unique_ptr<GWeatherLocation, Unref>;

constexpr double kMicrodegrees = 1e6;

std::string text(const char* value) {
    return value != nullptr ? value : "";
}

std::string countryName(GWeatherLocation* location) {
    const std::unique_ptr<char, decltype(&g_free)> name(
        gweather_location_get_country_name(location), g_free);
    return text(name.get());
}

Place place(GWeatherLocation* city) {
    Place result{.name = text(gweather_location_get_name(city)),
                 .country = countryName(city),
                 .timezone = text(gweather_location_get_timezone_str(city))};
    gweather_location_get_coords(city, &result.latitude, &result.longitude);
    // The database keeps radians; a millionth of a degree (11 cm) undoes the conversion's noise.
    result.latitude = std::round(result.latitude * kMicrodegrees) / kMicrodegrees;
    result.longitude = std::round(result.longitude * kMicrodegrees) / kMicrodegrees;
    const LocationHandle parent(gweather_location_get_parent(city));
    if (parent && gweather_location_get_level(parent.get()) == GWEATHER_LOCATION_ADM1) {
        result.region = text(gweather_location_get_name(parent.get()));
    }
    return result;
}

void collectCities(GWeatherLocation* location, std::vector<Place>& found) {
    GWeatherLocation* child = nullptr;
    // Each call takes the previous child's reference and gives the next one's.
    while ((child = gweather_location_next_child(location, child)) != nullptr) {
        if (gweather_location_get_level(child) == GWEATHER_LOCATION_CITY) {
            if (gweather_location_has_coords(child) != FALSE) found.push_back(place(child));
        } else {
            collectCities(child, found);
        }
    }
}

std::vector<Place> allCities() {
    std::vector<Place> found;
    if (auto* world = gweather_location_get_world()) collectCities(world, found);
    return found;
}

std::optional<Place> nearest(double latitude, double longitude) {
    auto* world = gweather_location_get_world();
    if (world == nullptr) return std::nullopt;
    const LocationHandle city(gweather_location_find_nearest_city(world, latitude, longitude));
    if (!city) return std::nullopt;
    return place(city.get());
}

const WorldLocationsModule kModule{.cities = allCities, .nearestCity = nearest};

}  // namespace

}  // namespace lunoval::places

extern "C" const lunoval::places::WorldLocationsModule* lunovalWorldLocations() {
    return &lunoval::places::kModule;
}
