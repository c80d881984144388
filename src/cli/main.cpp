#include <malloc.h>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "cli/device_options.hpp"
#include "cli/eclipses_command.hpp"
#include "cli/gallery_command.hpp"
#include "cli/host_command.hpp"
#include "cli/locations_command.hpp"
#include "cli/moon_command.hpp"
#include "cli/preferences_command.hpp"
#include "cli/record_command.hpp"
#include "cli/reload_command.hpp"
#include "cli/render_command.hpp"
#include "cli/timeline_command.hpp"

namespace {

constexpr int kUsageError = 2;
constexpr int kLargeSurfaceBytes = 64 << 20;

int fail(std::string_view message, int status) {
    std::cerr << "lunoval: " << message << "\n";
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    // Drawing allocates large scratch surfaces, one per layer; keeping freed ones in the heap
    // spares the page faults of mapping each one anew.
    mallopt(M_MMAP_THRESHOLD, kLargeSurfaceBytes);
    mallopt(M_TRIM_THRESHOLD, 2 * kLargeSurfaceBytes);
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
    MoonOptions moon;
    auto* moonCommand = addMoonCommand(app, moon);
    RenderCommandOptions render;
    auto* renderCommand = addRenderCommand(app, render);
    GalleryOptions gallery;
    auto* galleryCommand = addGalleryCommand(app, gallery);
    HostOptions host;
    auto* hostCommand = addHostCommand(app, host);
    auto* reloadCommand = addReloadCommand(app);
    LocationsOptions locations;
    auto* locationsCommand = addLocationsCommand(app, locations);
    PreferencesOptions preferences;
    auto* preferencesCommand = addPreferencesCommand(app, preferences);

    try {
        app.parse(argc, argv);
        applyDeviceOptions(device);
        applyPreferences(*moonCommand, moon.scale,
                         [&](const auto& folder) { moon.out = folder / moon.out; });
        applyPreferences(*renderCommand, render.render.scale, [&](const auto& folder) {
            render.out = folder / defaultImageName(render.request);
        });
        applyPreferences(*galleryCommand, gallery.render.scale,
                         [&](const auto& folder) { gallery.out = folder; });
        applyPreferences(*hostCommand, host.render.scale,
                         [&](const auto& folder) { host.out = folder; });
        if (recordCommand->parsed()) return runRecord(record);
        if (eclipsesCommand->parsed()) return runEclipses(eclipses);
        if (timelineCommand->parsed()) return runTimeline(timeline);
        if (moonCommand->parsed()) return runMoon(moon);
        if (renderCommand->parsed()) return runRender(render);
        if (galleryCommand->parsed()) return runGallery(gallery, device);
        if (hostCommand->parsed()) return runHost(host);
        if (reloadCommand->parsed()) return runReload();
        if (locationsCommand->parsed()) return runLocations(*locationsCommand, locations);
        if (preferencesCommand->parsed()) return runPreferences(*preferencesCommand, preferences);
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
