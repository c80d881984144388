#include "desktop/desktop_window.hpp"

#include <gtk-layer-shell/gtk-layer-shell.h>
#ifdef GDK_WINDOWING_X11
#include <gdk/gdkx.h>
#endif

#include <algorithm>
#include <cmath>

#include "desktop/gtk_actions.hpp"

namespace lunoval::desktop {

namespace {

constexpr int kGap = 12;  // points between widgets

bool atLeft(Corner corner) {
    return corner == Corner::topLeft || corner == Corner::bottomLeft;
}

bool atTop(Corner corner) {
    return corner == Corner::topLeft || corner == Corner::topRight;
}

bool onX11(GtkWidget* window) {
#ifdef GDK_WINDOWING_X11
    return GDK_IS_X11_DISPLAY(gtk_widget_get_display(window));
#else
    (void)window;
    return false;
#endif
}

void anchorLayer(GtkWindow* window, Placement placement) {
    gtk_layer_init_for_window(window);
    gtk_layer_set_namespace(window, "lunoval");
    gtk_layer_set_layer(window, placement.layer == Layer::background
                                    ? GTK_LAYER_SHELL_LAYER_BACKGROUND
                                    : GTK_LAYER_SHELL_LAYER_BOTTOM);
    const auto horizontal =
        atLeft(placement.corner) ? GTK_LAYER_SHELL_EDGE_LEFT : GTK_LAYER_SHELL_EDGE_RIGHT;
    const auto vertical =
        atTop(placement.corner) ? GTK_LAYER_SHELL_EDGE_TOP : GTK_LAYER_SHELL_EDGE_BOTTOM;
    for (const auto edge : {horizontal, vertical}) {
        gtk_layer_set_anchor(window, edge, TRUE);
        gtk_layer_set_margin(window, edge, int(std::lround(placement.margin)));
    }
}

// Desktop-type windows stay below the others, on every workspace, out of task bars and pagers.
void keepOnDesktop(GtkWindow* window) {
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DESKTOP);
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_keep_below(window, TRUE);
    gtk_window_set_skip_taskbar_hint(window, TRUE);
    gtk_window_set_skip_pager_hint(window, TRUE);
    gtk_window_set_accept_focus(window, FALSE);
    gtk_window_stick(window);
}

// Lets lock-screen widgets stand on what is below them where the screen can show it.
void allowTransparency(GtkWidget* window) {
    if (GdkVisual* visual = gdk_screen_get_rgba_visual(gtk_widget_get_screen(window))) {
        gtk_widget_set_visual(window, visual);
    }
    gtk_widget_set_app_paintable(window, TRUE);
    g_signal_connect(window, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* cairo, gpointer) {
                         cairo_save(cairo);
                         cairo_set_operator(cairo, CAIRO_OPERATOR_SOURCE);
                         cairo_set_source_rgba(cairo, 0, 0, 0, 0);
                         cairo_paint(cairo);
                         cairo_restore(cairo);
                         return FALSE;
                     }),
                     nullptr);
}

}  // namespace

DesktopWindow::DesktopWindow(const std::vector<DesktopWidget>& widgets, Placement placement,
                             WidgetActions actions)
    : placement_(placement),
      actions_(std::move(actions)),
      window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
    g_object_ref_sink(window_);
    auto* window = GTK_WINDOW(window_);
    gtk_window_set_title(window, "Lunoval");
    gtk_window_set_resizable(window, FALSE);
    if (gtk_layer_is_supported()) {
        anchorLayer(window, placement);
    } else if (onX11(window_)) {
        keepOnDesktop(window);
    }
    allowTransparency(window_);
    g_signal_connect_swapped(window_, "delete-event", G_CALLBACK(+[](DesktopWindow* self) {
                                 self->actions_.quit();
                                 return TRUE;
                             }),
                             this);

    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, kGap);
    for (const auto& widget : widgets) {
        auto slot = std::make_unique<Slot>(
            Slot{.window = this, .widget = widget, .area = gtk_drawing_area_new()});
        const auto size = widgetkit::familySize(widget.family);
        gtk_widget_set_size_request(slot->area, int(size.width), int(size.height));
        gtk_widget_set_halign(slot->area,
                              atLeft(placement.corner) ? GTK_ALIGN_START : GTK_ALIGN_END);
        gtk_widget_add_events(slot->area, GDK_BUTTON_PRESS_MASK);
        g_signal_connect(slot->area, "draw", G_CALLBACK(draw), slot.get());
        g_signal_connect(slot->area, "button-press-event", G_CALLBACK(press), slot.get());
        gtk_box_pack_start(GTK_BOX(column), slot->area, FALSE, FALSE, 0);
        slots_.push_back(std::move(slot));
    }
    gtk_container_add(GTK_CONTAINER(window_), column);
    place();
}

DesktopWindow::~DesktopWindow() {
    gtk_widget_destroy(window_);
    g_object_unref(window_);
}

void DesktopWindow::show(const MoonWidgetEntry& entry) {
    entry_ = entry;
    for (auto& slot : slots_) {
        slot->rendered.reset();
        gtk_widget_queue_draw(slot->area);
    }
    gtk_widget_show_all(window_);
}

const char* DesktopWindow::surface() const {
    if (gtk_layer_is_layer_window(GTK_WINDOW(window_))) {
        return placement_.layer == Layer::background
                   ? "a layer-shell surface on the background layer"
                   : "a layer-shell surface on the bottom layer";
    }
    return onX11(window_) ? "a desktop window on X11" : "a window";
}

// On X11 the window is moved to its corner of the work area; the layer shell anchors it itself.
void DesktopWindow::place() {
    if (!onX11(window_) || gtk_layer_is_supported()) return;
    int width = 0;
    int height = -kGap;
    for (const auto& slot : slots_) {
        const auto size = widgetkit::familySize(slot->widget.family);
        width = std::max(width, int(size.width));
        height += int(size.height) + kGap;
    }
    GdkDisplay* display = gtk_widget_get_display(window_);
    GdkMonitor* monitor = gdk_display_get_primary_monitor(display);
    if (monitor == nullptr) monitor = gdk_display_get_monitor(display, 0);
    if (monitor == nullptr) return;
    GdkRectangle area;
    gdk_monitor_get_workarea(monitor, &area);
    const int margin = int(std::lround(placement_.margin));
    const int x =
        atLeft(placement_.corner) ? area.x + margin : area.x + area.width - margin - width;
    const int y =
        atTop(placement_.corner) ? area.y + margin : area.y + area.height - margin - height;
    gtk_window_move(GTK_WINDOW(window_), x, y);
}

// At the monitor's scale factor, in points, as `lunoval render` draws at that scale.
gboolean DesktopWindow::draw(GtkWidget* area, cairo_t* cairo, Slot* slot) {
    const auto& entry = slot->window->entry_;
    if (!entry) return TRUE;
    const int scale = gtk_widget_get_scale_factor(area);
    if (!slot->rendered || slot->renderedScale != scale) {
        slot->rendered = layOutWidget(slot->widget, *entry, scale, slot->window->measurer_);
        slot->renderedScale = scale;
    }
    paintWidget(cairo, slot->widget, *slot->rendered);
    return TRUE;
}

gboolean DesktopWindow::press(GtkWidget* /*widget*/, GdkEventButton* event, Slot* slot) {
    if (event->type != GDK_BUTTON_PRESS) return FALSE;
    if (event->button == GDK_BUTTON_SECONDARY) {
        slot->window->popUpMenu(*slot, reinterpret_cast<const GdkEvent*>(event));
    } else if (event->button == GDK_BUTTON_PRIMARY && slot->rendered &&
               slot->rendered->list.widgetURL) {
        slot->window->actions_.openURL(*slot->rendered->list.widgetURL);
    }
    return TRUE;
}

// Size, place, refresh and quit.
void DesktopWindow::popUpMenu(Slot& slot, const GdkEvent* event) {
    GtkWidget* menu = gtk_menu_new();
    GtkWidget* sizes = gtk_menu_new();
    for (const auto family : slot.widget.widget.supportedFamilies) {
        const auto name =
            std::string(widgetkit::familyName(family)) + (family == slot.widget.family ? " ✓" : "");
        appendItem(sizes, name, [this, &slot, family] { resize(slot, family); });
    }
    GtkWidget* sizeItem = gtk_menu_item_new_with_label("Size");
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(sizeItem), sizes);
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), sizeItem);
    GtkWidget* placesMenu = gtk_menu_new();
    for (std::size_t i = 0; i < places_.names.size(); ++i) {
        const auto name = places_.names[i] + (i == places_.selectedIndex ? " ✓" : "");
        appendItem(placesMenu, name, [this, i] { actions_.selectPlace(i); });
    }
    GtkWidget* placeItem = gtk_menu_item_new_with_label("Place");
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(placeItem), placesMenu);
    gtk_widget_set_sensitive(placeItem, !places_.names.empty());
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), placeItem);
    appendItem(menu, "Places…", [this] { actions_.openURL("lunoval://settings"); });
    appendItem(menu, "Refresh", [this] { actions_.refresh(); });
    appendItem(menu, "Quit", [this] { actions_.quit(); });
    gtk_widget_show_all(menu);
    // The menu goes when closed.
    g_signal_connect(menu, "deactivate", G_CALLBACK(+[](GtkWidget* shown) {
                         g_idle_add(
                             +[](gpointer dropped) {
                                 gtk_widget_destroy(GTK_WIDGET(dropped));
                                 return G_SOURCE_REMOVE;
                             },
                             shown);
                     }),
                     nullptr);
    gtk_menu_attach_to_widget(GTK_MENU(menu), slot.area, nullptr);
    gtk_menu_popup_at_pointer(GTK_MENU(menu), event);
}

void DesktopWindow::resize(Slot& slot, widgetkit::WidgetFamily family) {
    slot.widget.family = family;
    slot.rendered.reset();
    const auto size = widgetkit::familySize(family);
    gtk_widget_set_size_request(slot.area, int(size.width), int(size.height));
    gtk_window_resize(GTK_WINDOW(window_), 1, 1);
    place();
    gtk_widget_queue_draw(slot.area);
}

}  // namespace lunoval::desktop
