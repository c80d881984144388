#include <CLI/CLI.hpp>

#include "cli/command_line.hpp"
#include "cli/desktop_command.hpp"
#include "cli/device_options.hpp"

// `lunoval desktop`, which lunoval hands over with its own command line: the one program that
// loads GTK.
// NOLINTNEXTLINE(bugprone-exception-escape): setting the options up throws only on a slip of ours
int main(int argc, char** argv) {
    using namespace lunoval::cli;
    CommandLine commandLine;
    DesktopOptions desktop;
    addDesktopCommand(commandLine.app, desktop);
    return commandLine.run(argc, argv, [&] {
        applyDeviceOptions(commandLine.device);
        requireInstalledData();
        return runDesktop(desktop);
    });
}
