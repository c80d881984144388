#pragma once

#include <CLI/CLI.hpp>

#include "cli/device_options.hpp"

namespace lunoval::cli {

struct RecordOptions {
    double latitude = 0;
    double longitude = 0;
    bool json = false;
};

CLI::App* addRecordCommand(CLI::App& app, RecordOptions& options);

// Fills one record for the place at the device's instant and prints it.
int runRecord(const RecordOptions& options, const DeviceOptions& device);

}  // namespace lunoval::cli
