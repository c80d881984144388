#include "places/world_locations.hpp"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "platform/installation.hpp"

namespace lunoval::places {

namespace {

const WorldLocationsModule& module() {
    static const WorldLocationsModule* const loaded = [] {
        const auto path = installation::placesModule();
        void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            throw std::runtime_error(std::string("cannot load the world locations: ") + dlerror());
        }
        // The module stays loaded for the life of the process.
        const auto entry = reinterpret_cast<decltype(&lunovalWorldLocations)>(
            dlsym(handle, "lunovalWorldLocations"));
        if (entry == nullptr) throw std::runtime_error("cannot read " + path.string());
        return entry();
    }();
    return *loaded;
}

}  // namespace

std::string Place::description() const {
    return name + (region.empty() ? "" : ", " + region) + ", " + country;
}

const std::vector<Place>& cities() {
    static const std::vector<Place> all = module().cities();
    return all;
}

std::optional<Place> nearestCity(double latitude, double longitude) {
    return module().nearestCity(latitude, longitude);
}

}  // namespace lunoval::places
