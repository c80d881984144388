#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace lunoval::desktop {

// Runs `action` on each emission of `signal` (one without arguments beyond the instance, such
// as "activate" or "clicked"); the action lives as long as the connection.
void onSignal(gpointer instance, const char* signal, std::function<void()> action);

// A menu item with `label` that runs `action`, appended to `menu`.
GtkWidget* appendItem(GtkWidget* menu, const std::string& label, std::function<void()> action);

}  // namespace lunoval::desktop
