#pragma once

#include <optional>

#include <CLI/CLI.hpp>

namespace lunoval::cli {

struct EclipsesOptions {
    std::optional<int> fromYear;
    std::optional<int> toYear;
    std::optional<double> latitude;
    std::optional<double> longitude;
    bool json = false;
};

CLI::App* addEclipsesCommand(CLI::App& app, EclipsesOptions& options);

// Lists the catalogued eclipses of a range of years in the device zone, with their visibility
// when a place is given. Status 1 when the catalogue cannot be loaded.
int runEclipses(const EclipsesOptions& options);

}  // namespace lunoval::cli
