#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace lunoval::cli {

struct LocationsOptions {
    bool json = false;
    std::string name;
    std::string latitude;
    std::string longitude;
    std::string zone;
    long long index = 0;
    long long to = 0;
    std::optional<double> timeout;  // seconds; absent: the update's own timer
};

// The host app's side of the saved places: list, add, remove, move, select, update.
CLI::App* addLocationsCommand(CLI::App& app, LocationsOptions& options);
int runLocations(const CLI::App& command, const LocationsOptions& options);

}  // namespace lunoval::cli
