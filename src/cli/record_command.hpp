#pragma once

#include <CLI/CLI.hpp>

#include "cli/device_options.hpp"

namespace lunoval::cli {

struct RecordOptions {
    std::optional<double> latitude;
    std::optional<double> longitude;
    bool json = false;
};

CLI::App* addRecordCommand(CLI::App& app, RecordOptions& options);

// Fills one record for a place at the device's instant and prints it: --lat and --lng, else the
// device's fixed position (--location), else the selected saved place, as a widget would.
int runRecord(const RecordOptions& options);

// The place given by --lat and --lng, whose zone the device takes without --timezone.
std::optional<Location> recordPlace(const RecordOptions& options);

}  // namespace lunoval::cli
