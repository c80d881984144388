#pragma once

#include <libayatana-appindicator/app-indicator.h>

#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "app/moon_summary.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval::desktop {

struct TrayActions {
    std::function<void()> openPlaces;
    std::function<void()> refresh;
    std::function<void()> quit;
};

// The moon of the moment as a status notifier item: its disc as the icon, the phase and lit
// percentage as the title, the day's times in the menu.
class Tray {
  public:
    explicit Tray(TrayActions actions);
    ~Tray();
    Tray(const Tray&) = delete;
    Tray& operator=(const Tray&) = delete;

    void show(const MoonWidgetEntry& entry);

  private:
    void showIcon(const Solar::SimpleMoonPhase& phase);
    void showMenu(const std::optional<MoonSummary>& summary);

    TrayActions actions_;
    AppIndicator* indicator_;
    std::filesystem::path iconFolder_;
    std::optional<std::filesystem::path> icon_;
    std::optional<MoonSummary> shown_;
    // The title and at most four details: the next phase, moon and sun times, an eclipse.
    std::array<GtkWidget*, 5> lines_{};
    GtkWidget* separator_;
};

}  // namespace lunoval::desktop
