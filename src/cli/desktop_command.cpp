#include "cli/desktop_command.hpp"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <csignal>
#include <memory>
#include <optional>

#include "cli/device_options.hpp"
#include "cli/drawing_commands.hpp"
#include "cli/widget_request.hpp"
#include "desktop/desktop_host.hpp"
#include "desktop/places_window.hpp"
#include "desktop/tray.hpp"
#include "platform/log.hpp"

namespace lunoval::cli {

namespace {

using desktop::Corner;
using desktop::Layer;

constexpr const char* kOwnScheme = "lunoval://";

std::vector<desktop::DesktopWidget> chosenWidgets(const std::vector<std::string>& choices) {
    std::vector<desktop::DesktopWidget> widgets;
    for (const auto& text : choices) {
        const auto [widget, family] = widgetChoice(text);
        widgets.push_back({widget, family});
    }
    if (widgets.empty()) throw UsageError("--widgets needs at least one KIND:FAMILY");
    return widgets;
}

void requestFromProvider(desktop::EntryKind kind, const desktop::ShowEntry& show) {
    const WidgetRequest request{.placeholder = kind == desktop::EntryKind::placeholder};
    requestEntry(request, widgetkit::WidgetFamily::systemSmall, EntryPurpose::draw, show);
}

// Our own links open the places window, the host app's settings; any other goes to the
// desktop's handler for it.
void follow(const std::string& url, desktop::PlacesWindow& places) {
    if (url.starts_with(kOwnScheme)) {
        places.present();
        return;
    }
    GError* error = nullptr;
    if (g_app_info_launch_default_for_uri(url.c_str(), nullptr, &error) == FALSE) {
        log::warning("cannot open " + url + ": " + error->message);
        g_error_free(error);
    }
}

void quitOnSignals() {
    for (const int signal : {SIGINT, SIGTERM}) {
        g_unix_signal_add(
            signal,
            +[](gpointer) -> gboolean {
                gtk_main_quit();
                return G_SOURCE_CONTINUE;
            },
            nullptr);
    }
}

// The places window alone, until it is closed: where the desktop's handler of our links goes.
int showPlacesAlone() {
    desktop::PlacesWindow places([](const desktop::SavedPlaces&) {});
    g_signal_connect(places.window(), "hide", G_CALLBACK(gtk_main_quit), nullptr);
    places.present();
    gtk_main();
    return 0;
}

int showWidgets(const DesktopOptions& options, const std::vector<desktop::DesktopWidget>& widgets) {
    std::unique_ptr<desktop::DesktopHost> host;
    const auto refresh = [&host] { host->reload(); };
    std::optional<desktop::DesktopWindow> window;
    desktop::PlacesWindow places([&window](const auto& list) { window->setPlaces(list); });
    const auto open = [&places](const std::string& url) { follow(url, places); };
    const auto selectPlace = [&](std::size_t index) {
        desktop::runLocations({"select", std::to_string(index)}, [&](const auto& result) {
            if (!result.succeeded) log::warning("cannot select the place: " + result.errors);
            desktop::readSavedPlaces([&window](const auto& list) { window->setPlaces(list); });
        });
    };
    window.emplace(widgets, options.placement,
                   desktop::WidgetActions{.openURL = open,
                                          .refresh = refresh,
                                          .quit = gtk_main_quit,
                                          .selectPlace = selectPlace});
    std::optional<desktop::Tray> tray;
    if (options.tray == TrayShown::shown) {
        tray.emplace(desktop::TrayActions{
            .openPlaces = [&] { open(kOwnScheme); }, .refresh = refresh, .quit = gtk_main_quit});
    }
    host = std::make_unique<desktop::DesktopHost>(options.minInterval, requestFromProvider,
                                                  [&](const MoonWidgetEntry& entry) {
                                                      window->show(entry);
                                                      if (tray) tray->show(entry);
                                                  });
    desktop::readSavedPlaces([&window](const auto& list) { window->setPlaces(list); });
    log::line("ℹ️ Desktop: showing " + counted(double(widgets.size()), "widget") + " as " +
              std::string(window->surface()));
    host->start();
    gtk_main();
    log::line("ℹ️ Desktop: stopped");
    return 0;
}

}  // namespace

CLI::App* addDesktopCommand(CLI::App& app, DesktopOptions& options) {
    auto* command = app.add_subcommand(kDesktopCommand.name, kDesktopCommand.description);
    command
        ->add_option("--widgets", options.widgets,
                     "KIND:FAMILY,... (default MoonPhaseWidget:systemSmall)")
        ->delimiter(',');
    addChoiceOption(
        *command, "--corner", options.placement.corner,
        std::vector<std::pair<std::string, Corner>>{{"top-left", Corner::topLeft},
                                                    {"top-right", Corner::topRight},
                                                    {"bottom-left", Corner::bottomLeft},
                                                    {"bottom-right", Corner::bottomRight}},
        "The screen's corner the widgets stand in (default bottom-right)");
    addNumberOption(*command, "--margin", options.placement.margin,
                    "Points between the widgets and the screen's edges (default 24)", {0, 4096});
    addChoiceOption(*command, "--layer", options.placement.layer,
                    std::vector<std::pair<std::string, Layer>>{{"bottom", Layer::bottom},
                                                               {"background", Layer::background}},
                    "On Wayland: below the windows, or on the wallpaper (default bottom)");
    addMinIntervalOption(*command, options.minInterval);
    command->add_flag_callback(
        "--no-tray", [&options] { options.tray = TrayShown::hidden; }, "No moon in the tray");
    command->add_option("link", options.open,
                        "A lunoval:// link to follow instead (lunoval://settings: the places "
                        "window, until closed), as the desktop's handler of such links does");
    command->footer(
        "A click follows the widget's link; the right button offers its size, the place, "
        "refresh and quit. lunoval reload and lunoval locations select refresh it.");
    return command;
}

int runDesktop(const DesktopOptions& options) {
    auto widgets = chosenWidgets(options.widgets);
    requireMinInterval(options.minInterval);
    if (options.open && !options.open->starts_with(kOwnScheme)) {
        throw UsageError("desktop follows lunoval:// links only, not '" + *options.open + "'");
    }
    // Cairo's image backend then draws the window, as it draws the image of `lunoval render`;
    // without OpenGL, which the widgets never use, GDK loads no GL driver (50 MB with Mesa's).
    g_setenv("GDK_RENDERING", "image", FALSE);
    g_setenv("GDK_GL", "disable", FALSE);
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        throw std::runtime_error(
            "cannot open a display (neither WAYLAND_DISPLAY nor DISPLAY works)");
    }
    quitOnSignals();
    if (options.open) return showPlacesAlone();
    return showWidgets(options, widgets);
}

}  // namespace lunoval::cli
