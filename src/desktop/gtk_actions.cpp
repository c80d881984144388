#include "desktop/gtk_actions.hpp"

namespace lunoval::desktop {

namespace {

using Action = std::function<void()>;

void runAction(GtkWidget* /*widget*/, gpointer action) {
    (*static_cast<Action*>(action))();
}

void dropAction(gpointer action, GClosure* /*closure*/) {
    delete static_cast<Action*>(action);
}

}  // namespace

void onSignal(gpointer instance, const char* signal, std::function<void()> action) {
    g_signal_connect_data(instance, signal, G_CALLBACK(runAction), new Action(std::move(action)),
                          dropAction, GConnectFlags{});
}

GtkWidget* appendItem(GtkWidget* menu, const std::string& label, std::function<void()> action) {
    GtkWidget* item = gtk_menu_item_new_with_label(label.c_str());
    onSignal(item, "activate", std::move(action));
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
    return item;
}

}  // namespace lunoval::desktop
