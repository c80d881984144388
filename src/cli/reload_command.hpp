#pragma once

#include <CLI/CLI.hpp>

namespace lunoval::cli {

CLI::App* addReloadCommand(CLI::App& app);

// Asks a running host to reload every timeline; succeeds whether or not one runs.
int runReload();

}  // namespace lunoval::cli
