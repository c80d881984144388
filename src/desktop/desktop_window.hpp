#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/saved_places.hpp"
#include "desktop/widget_drawing.hpp"
#include "ui/pango_text_measurer.hpp"

namespace lunoval::desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };
// The layer-shell layer on Wayland: below every window, or on the wallpaper itself.
enum class Layer { bottom, background };

struct Placement {
    Corner corner = Corner::bottomRight;
    double margin = 24;  // points from the screen's edges
    Layer layer = Layer::bottom;
};

// What the widgets' menu and a tap ask of the program.
struct WidgetActions {
    std::function<void(const std::string& url)> openURL;
    std::function<void()> refresh;
    std::function<void()> quit;
    std::function<void(std::size_t index)> selectPlace;
};

// The widgets in one column at a corner of the screen: a layer-shell surface on Wayland, a
// desktop-type window below the others and out of the task bar on X11, else a small window.
class DesktopWindow {
  public:
    DesktopWindow(const std::vector<DesktopWidget>& widgets, Placement placement,
                  WidgetActions actions);
    ~DesktopWindow();
    DesktopWindow(const DesktopWindow&) = delete;
    DesktopWindow& operator=(const DesktopWindow&) = delete;

    // Draws every widget with `entry` from now on.
    void show(const MoonWidgetEntry& entry);
    // What the widgets stand on, such as "a desktop window on X11".
    [[nodiscard]] const char* surface() const;
    // The places the menu offers.
    void setPlaces(const SavedPlaces& places) { places_ = places; }

  private:
    struct Slot {
        DesktopWindow* window;
        DesktopWidget widget;
        GtkWidget* area;
        std::optional<RenderedWidget> rendered;
        int renderedScale = 0;
    };

    static gboolean draw(GtkWidget* area, cairo_t* cairo, Slot* slot);
    static gboolean press(GtkWidget* area, GdkEventButton* event, Slot* slot);
    void popUpMenu(Slot& slot, const GdkEvent* event);
    void resize(Slot& slot, widgetkit::WidgetFamily family);
    void place();

    Placement placement_;
    WidgetActions actions_;
    GtkWidget* window_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::optional<MoonWidgetEntry> entry_;
    SavedPlaces places_;
    ui::PangoTextMeasurer measurer_;
};

}  // namespace lunoval::desktop
