#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "cli/device_options.hpp"

namespace lunoval::cli {

// What the programs of lunoval share on their command lines: the title, the device options
// and one command required, run with one way of failing. Without a command, or with `help`,
// the usage lists the commands; a mistyped one is named with what it may have meant.
struct CommandLine {
    CommandLine();

    // Parses the arguments and returns what `command` returns for the command chosen. Bad input
    // is one line on standard error and status 2; any other failure one line and status 1.
    int run(int argc, char** argv, const std::function<int()>& command);

    CLI::App app{"Moon phase and sun and moon times, as widgets and as data", "lunoval"};
    DeviceOptions device;
    CLI::App* help = nullptr;
};

// The phase tables, the eclipse catalogue and the translations the program was installed with;
// throws when they are missing, since no answer would be right without them.
void requireInstalledData();

}  // namespace lunoval::cli
