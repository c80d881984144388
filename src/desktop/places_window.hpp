#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

#include "desktop/saved_places.hpp"

namespace lunoval::desktop {

// The host app's side of the saved places: lists them, adds one by name, moves, removes and
// selects them, each through `lunoval locations`. Hidden, not destroyed, when closed.
class PlacesWindow {
  public:
    // `changed` hears of every list read after a change.
    explicit PlacesWindow(std::function<void(const SavedPlaces&)> changed);
    ~PlacesWindow();
    PlacesWindow(const PlacesWindow&) = delete;
    PlacesWindow& operator=(const PlacesWindow&) = delete;

    void present();
    [[nodiscard]] GtkWidget* window() const { return window_; }

  private:
    void reload();
    void show(const SavedPlaces& places);
    void run(const std::vector<std::string>& arguments);
    void addRow(const SavedPlaces& places, std::size_t index);

    std::function<void(const SavedPlaces&)> changed_;
    GtkWidget* window_;
    GtkWidget* list_;
    GtkWidget* entry_;
    GtkWidget* message_;
    GtkWidget* firstRadio_ = nullptr;
};

}  // namespace lunoval::desktop
