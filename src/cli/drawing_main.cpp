#include <malloc.h>
#include <cstdlib>

#include <CLI/CLI.hpp>

#include "cli/command_line.hpp"
#include "cli/device.hpp"
#include "cli/device_options.hpp"
#include "cli/gallery_command.hpp"
#include "cli/host_command.hpp"
#include "cli/moon_command.hpp"
#include "cli/preferences_command.hpp"
#include "cli/render_command.hpp"

namespace {

constexpr int kSurfaceBytes = 256 << 10;

}  // namespace

// The commands of lunoval that draw; lunoval hands them over with its own command line.
// NOLINTNEXTLINE(bugprone-exception-escape): setting the options up throws only on a slip of ours
int main(int argc, char** argv) {
    // Each image's surface is mapped on its own and handed back when the image is written:
    // kept in the heap, the surfaces of a gallery would stay resident side by side. Mapping
    // each anew costs page faults, a few milliseconds a gallery.
    mallopt(M_MMAP_THRESHOLD, kSurfaceBytes);
    mallopt(M_TRIM_THRESHOLD, 2 * kSurfaceBytes);
    using namespace lunoval::cli;
    CommandLine commandLine;
    auto& app = commandLine.app;
    MoonOptions moon;
    auto* moonCommand = addMoonCommand(app, moon);
    RenderCommandOptions render;
    auto* renderCommand = addRenderCommand(app, render);
    GalleryOptions gallery;
    auto* galleryCommand = addGalleryCommand(app, gallery);
    HostOptions host;
    auto* hostCommand = addHostCommand(app, host);

    return commandLine.run(argc, argv, [&] {
        applyDeviceOptions(commandLine.device);
        requireInstalledData();
        // Fontconfig reads the language from the environment itself, and would warn again
        // about one that cannot be used.
        const auto locale = lunoval::device::localeIdentifier();
        ::setenv("FC_LANG", locale.substr(0, locale.find('_')).c_str(), 1);
        applyPreferences(*moonCommand, moon.scale,
                         [&](const auto& folder) { moon.out = folder / moon.out; });
        applyPreferences(*renderCommand, render.render.scale, [&](const auto& folder) {
            render.out = folder / defaultImageName(render.request);
        });
        applyPreferences(*galleryCommand, gallery.render.scale,
                         [&](const auto& folder) { gallery.out = folder; });
        applyPreferences(*hostCommand, host.render.scale,
                         [&](const auto& folder) { host.out = folder; });
        if (moonCommand->parsed()) return runMoon(moon);
        if (renderCommand->parsed()) return runRender(render);
        if (galleryCommand->parsed()) return runGallery(gallery, commandLine.device);
        return runHost(host);
    });
}
