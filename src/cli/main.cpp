#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "cli/device_options.hpp"
#include "cli/eclipses_command.hpp"
#include "cli/record_command.hpp"
#include "cli/timeline_command.hpp"

namespace {

constexpr int kUsageError = 2;

int fail(std::string_view message, int status) {
    std::cerr << "lunoval: " << message << "\n";
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace lunoval::cli;
    CLI::App app{"Moon phase and sun and moon times, as widgets and as data", "lunoval"};
    app.require_subcommand(1);
    app.fallthrough();

    DeviceOptions device;
    addDeviceOptions(app, device);
    RecordOptions record;
    auto* recordCommand = addRecordCommand(app, record);
    EclipsesOptions eclipses;
    auto* eclipsesCommand = addEclipsesCommand(app, eclipses);
    TimelineOptions timeline;
    auto* timelineCommand = addTimelineCommand(app, timeline);

    try {
        app.parse(argc, argv);
        applyDeviceOptions(device);
        if (recordCommand->parsed()) return runRecord(record);
        if (eclipsesCommand->parsed()) return runEclipses(eclipses);
        if (timelineCommand->parsed()) return runTimeline(timeline, device);
        return kUsageError;
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return fail(e.what(), kUsageError);
    } catch (const UsageError& e) {
        return fail(e.what(), kUsageError);
    } catch (const std::exception& e) {
        return fail(e.what(), 1);
    }
}
