#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace lunoval::cli {

inline constexpr const char* kCommandTitle =
    "Moon phase and sun and moon times, as widgets and as data";

// Parses the command line and returns what `run` returns for the command chosen. Bad input is
// one line on standard error and status 2; any other failure one line and status 1.
int runCommandLine(CLI::App& app, int argc, char** argv, const std::function<int()>& run);

}  // namespace lunoval::cli
