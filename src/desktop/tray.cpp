#include "desktop/tray.hpp"

#include <cmath>
#include <system_error>

#include "desktop/gtk_actions.hpp"
#include "platform/log.hpp"
#include "platform/widget_center.hpp"
#include "ui/painter.hpp"
#include "ui/pango_text_measurer.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace lunoval::desktop {

namespace {

namespace fs = std::filesystem;

constexpr double kIconPoints = 32;
constexpr double kIconScale = 2;
constexpr int kTiltStep = 5;  // degrees a new icon waits for

// Names the picture, so an icon is drawn again only when the disc would look different.
std::string iconName(const Solar::SimpleMoonPhase& phase) {
    const auto tilt = kTiltStep * int(std::lround(phase.tiltAngle / kTiltStep));
    return "lunoval-moon-" + std::string(Solar::caseName(phase.phaseType)) + "-" +
           std::to_string(std::lround(phase.illumination * 100)) + "-" + std::to_string(tilt);
}

}  // namespace

Tray::Tray(TrayActions actions)
    : actions_(std::move(actions)),
      indicator_(app_indicator_new("lunoval", "weather-clear-night",
                                   APP_INDICATOR_CATEGORY_APPLICATION_STATUS)),
      iconFolder_(widgetkit::reloadSocketPath().parent_path()),
      separator_(gtk_separator_menu_item_new()) {
    std::error_code error;
    fs::create_directories(iconFolder_, error);
    app_indicator_set_icon_theme_path(indicator_, iconFolder_.c_str());
    app_indicator_set_title(indicator_, "Lunoval");
    GtkWidget* menu = gtk_menu_new();
    for (auto& line : lines_) {
        line = gtk_menu_item_new_with_label("");
        gtk_widget_set_sensitive(line, FALSE);
        gtk_menu_shell_append(GTK_MENU_SHELL(menu), line);
    }
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), separator_);
    appendItem(menu, "Places…", actions_.openPlaces);
    appendItem(menu, "Refresh", actions_.refresh);
    appendItem(menu, "Quit", actions_.quit);
    gtk_widget_show_all(menu);
    app_indicator_set_menu(indicator_, GTK_MENU(menu));
    showMenu(std::nullopt);
    app_indicator_set_status(indicator_, APP_INDICATOR_STATUS_ACTIVE);
}

Tray::~Tray() {
    g_object_unref(indicator_);
    std::error_code error;
    if (icon_) fs::remove(*icon_, error);
}

// The menu is made again only when what it shows changes: every new menu is exported on the
// bus anew.
void Tray::show(const MoonWidgetEntry& entry) {
    auto summary = moonSummary(entry);
    if (summary) showIcon(*entry.widgetData->currentMoonPhase);
    if (summary == shown_) return;
    if (summary) app_indicator_set_title(indicator_, summary->title().c_str());
    showMenu(summary);
    shown_ = std::move(summary);
}

// The disc turned by the tilt, written atomically beside the reload socket; the old one goes.
void Tray::showIcon(const Solar::SimpleMoonPhase& phase) {
    const auto name = iconName(phase);
    const auto path = iconFolder_ / (name + ".png");
    if (icon_ == path) return;
    const SimpleMoonPhaseView disc{.moonPhase = phase,
                                   .size = kIconPoints,
                                   .strokeColor = ui::Color::white(),
                                   .fillColor = ui::Color::white(),
                                   .phaseBackgroundColor = ui::Color::clear(),
                                   .applyRotation = true,
                                   .strokeWidth = 1.5};
    const ui::Environment environment{.displayScale = kIconScale};
    const ui::PangoTextMeasurer measurer;
    try {
        ui::writeImage(ui::render(disc.body(), {kIconPoints, kIconPoints}, {measurer, environment}),
                       environment, path);
    } catch (const std::exception& error) {
        log::warning(error.what());
        return;
    }
    app_indicator_set_icon_full(indicator_, name.c_str(), phase.phaseName.c_str());
    std::error_code error;
    if (icon_) fs::remove(*icon_, error);
    icon_ = path;
}

// The lines are the menu's first items, labelled anew in place: a new menu would be exported on
// the bus anew, and the old ones were never freed.
void Tray::showMenu(const std::optional<MoonSummary>& summary) {
    std::vector<std::string> lines;
    if (summary) {
        lines.push_back(summary->title());
        lines.insert(lines.end(), summary->details.begin(), summary->details.end());
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        gtk_widget_set_visible(lines_[i], i < lines.size());
        if (i < lines.size()) gtk_menu_item_set_label(GTK_MENU_ITEM(lines_[i]), lines[i].c_str());
    }
    gtk_widget_set_visible(separator_, !lines.empty());
}

}  // namespace lunoval::desktop
