#include <algorithm>

#include <CLI/CLI.hpp>

#include "cli/bar_command.hpp"
#include "cli/command_line.hpp"
#include "cli/device_options.hpp"
#include "cli/drawing_commands.hpp"
#include "cli/eclipses_command.hpp"
#include "cli/locations_command.hpp"
#include "cli/preferences_command.hpp"
#include "cli/record_command.hpp"
#include "cli/reload_command.hpp"
#include "cli/timeline_command.hpp"

// NOLINTNEXTLINE(bugprone-exception-escape): setting the options up throws only on a slip of ours
int main(int argc, char** argv) {
    using namespace lunoval::cli;
    CommandLine commandLine;
    auto& app = commandLine.app;
    RecordOptions record;
    auto* recordCommand = addRecordCommand(app, record);
    EclipsesOptions eclipses;
    auto* eclipsesCommand = addEclipsesCommand(app, eclipses);
    TimelineOptions timeline;
    auto* timelineCommand = addTimelineCommand(app, timeline);
    const auto drawingCommands = addDrawingCommands(app);
    const auto* desktopCommand = addDesktopHandOver(app);
    BarOptions bar;
    auto* barCommand = addBarCommand(app, bar);
    auto* reloadCommand = addReloadCommand(app);
    LocationsOptions locations;
    auto* locationsCommand = addLocationsCommand(app, locations);
    PreferencesOptions preferences;
    auto* preferencesCommand = addPreferencesCommand(app, preferences);

    return commandLine.run(argc, argv, [&] {
        // The drawing program reads the device options itself.
        if (std::ranges::any_of(drawingCommands, &CLI::App::parsed)) runDrawingProgram(argv);
        if (desktopCommand->parsed()) runDesktopProgram(argv);
        applyDeviceOptions(commandLine.device,
                           recordCommand->parsed() ? recordPlace(record) : std::nullopt);
        if (recordCommand->parsed() || eclipsesCommand->parsed() || timelineCommand->parsed() ||
            barCommand->parsed()) {
            requireInstalledData();
        }
        if (recordCommand->parsed()) return runRecord(record);
        if (eclipsesCommand->parsed()) return runEclipses(eclipses);
        if (timelineCommand->parsed()) return runTimeline(timeline);
        if (reloadCommand->parsed()) return runReload();
        if (barCommand->parsed()) return runBar(bar);
        if (locationsCommand->parsed()) return runLocations(*locationsCommand, locations);
        return runPreferences(*preferencesCommand, preferences);
    });
}
