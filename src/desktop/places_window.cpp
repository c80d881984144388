#include "desktop/places_window.hpp"

#include <array>

#include "desktop/gtk_actions.hpp"

namespace lunoval::desktop {

namespace {

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): icon, then its tooltip, as GTK
GtkWidget* iconButton(const char* icon, const char* tooltip) {
    GtkWidget* button = gtk_button_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON);
    gtk_widget_set_tooltip_text(button, tooltip);
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    return button;
}

// The last line a command wrote on standard error, without its program name.
std::string lastLine(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    text = text.substr(text.find_last_of('\n') + 1);
    const std::string prefix = "lunoval: ";
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

}  // namespace

PlacesWindow::PlacesWindow(std::function<void(const SavedPlaces&)> changed)
    : changed_(std::move(changed)),
      window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)),
      list_(gtk_list_box_new()),
      entry_(gtk_entry_new()),
      message_(gtk_label_new("")) {
    g_object_ref_sink(window_);
    gtk_window_set_title(GTK_WINDOW(window_), "Lunoval places");
    gtk_window_set_default_size(GTK_WINDOW(window_), 360, 320);
    g_signal_connect(window_, "delete-event", G_CALLBACK(gtk_widget_hide_on_delete), nullptr);

    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 8);
    gtk_container_set_border_width(GTK_CONTAINER(column), 12);
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(list_), GTK_SELECTION_NONE);
    GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_widget_set_vexpand(scrolled, TRUE);
    gtk_container_add(GTK_CONTAINER(scrolled), list_);
    gtk_box_pack_start(GTK_BOX(column), scrolled, TRUE, TRUE, 0);

    GtkWidget* addRow = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
    gtk_entry_set_placeholder_text(GTK_ENTRY(entry_), "City, such as Paris or Quito, Ecuador");
    gtk_widget_set_hexpand(entry_, TRUE);
    GtkWidget* add = gtk_button_new_with_label("Add");
    const auto addNamed = [this] {
        const std::string name = gtk_entry_get_text(GTK_ENTRY(entry_));
        if (name.empty()) return;
        gtk_entry_set_text(GTK_ENTRY(entry_), "");
        run({"add", name});
    };
    onSignal(add, "clicked", addNamed);
    onSignal(entry_, "activate", addNamed);
    gtk_box_pack_start(GTK_BOX(addRow), entry_, TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(addRow), add, FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), addRow, FALSE, FALSE, 0);
    gtk_label_set_line_wrap(GTK_LABEL(message_), TRUE);
    gtk_label_set_xalign(GTK_LABEL(message_), 0);
    gtk_box_pack_start(GTK_BOX(column), message_, FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(window_), column);
}

PlacesWindow::~PlacesWindow() {
    gtk_widget_destroy(window_);
    g_object_unref(window_);
}

void PlacesWindow::present() {
    reload();
    gtk_widget_show_all(window_);
    gtk_window_present(GTK_WINDOW(window_));
}

void PlacesWindow::reload() {
    readSavedPlaces([this](const SavedPlaces& places) { show(places); });
}

void PlacesWindow::show(const SavedPlaces& places) {
    GList* rows = gtk_container_get_children(GTK_CONTAINER(list_));
    for (GList* row = rows; row != nullptr; row = row->next) {
        gtk_widget_destroy(GTK_WIDGET(row->data));
    }
    g_list_free(rows);
    firstRadio_ = nullptr;
    for (std::size_t i = 0; i < places.names.size(); ++i) addRow(places, i);
    gtk_widget_show_all(list_);
    changed_(places);
}

// The device first, then each saved place with buttons to move it up or down and remove it.
void PlacesWindow::addRow(const SavedPlaces& places, std::size_t index) {
    const auto number = std::to_string(index);
    const auto last = places.names.size() - 1;
    GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4);
    // One group, so that only the selected place shows as chosen.
    GtkWidget* select = gtk_radio_button_new_with_label_from_widget(GTK_RADIO_BUTTON(firstRadio_),
                                                                    places.names[index].c_str());
    if (firstRadio_ == nullptr) firstRadio_ = select;
    gtk_toggle_button_set_mode(GTK_TOGGLE_BUTTON(select), TRUE);
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(select), index == places.selectedIndex);
    onSignal(select, "toggled", [this, select, number, index, places] {
        const bool chosen = gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(select)) != FALSE;
        if (chosen && index != places.selectedIndex) run({"select", number});
    });
    gtk_box_pack_start(GTK_BOX(row), select, TRUE, TRUE, 0);
    if (index > 0) {
        struct Button {
            const char* icon;
            const char* tooltip;
            std::vector<std::string> arguments;
            bool shown;
        };
        const std::array<Button, 3> buttons{{
            {"go-up-symbolic", "Move up", {"move", number, std::to_string(index - 1)}, index > 1},
            {"go-down-symbolic",
             "Move down",
             {"move", number, std::to_string(index + 1)},
             index < last},
            {"list-remove-symbolic", "Remove", {"remove", number}, true},
        }};
        for (const auto& button : buttons) {
            GtkWidget* widget = iconButton(button.icon, button.tooltip);
            gtk_widget_set_sensitive(widget, button.shown);
            onSignal(widget, "clicked", [this, arguments = button.arguments] { run(arguments); });
            gtk_box_pack_start(GTK_BOX(row), widget, FALSE, FALSE, 0);
        }
    }
    gtk_list_box_insert(GTK_LIST_BOX(list_), row, -1);
}

void PlacesWindow::run(const std::vector<std::string>& arguments) {
    gtk_label_set_text(GTK_LABEL(message_), "");
    runLocations(arguments, [this](const CommandResult& result) {
        gtk_label_set_text(GTK_LABEL(message_),
                           result.succeeded ? "" : lastLine(result.errors).c_str());
        reload();
    });
}

}  // namespace lunoval::desktop
