#pragma once

#include <glib.h>

#include <functional>
#include <memory>
#include <optional>

#include "platform/refresh_schedule.hpp"
#include "platform/widget_center.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval::desktop {

enum class EntryKind { placeholder, timeline };
using ShowEntry = std::function<void(const MoonWidgetEntry&)>;
// Asks the widgets' provider for one entry of that kind and hands it over as soon as it is there.
using RequestEntry = std::function<void(EntryKind, const ShowEntry&)>;

// The widget host's rules on GLib's main loop: the placeholder at once, then a timeline, asked
// again when the refresh budget is spent or a reload request comes. Between refreshes it
// sleeps in the loop: one timer and the socket, nothing polled.
class DesktopHost {
  public:
    DesktopHost(double budgetMinutes, RequestEntry request, ShowEntry show);
    ~DesktopHost();
    DesktopHost(const DesktopHost&) = delete;
    DesktopHost& operator=(const DesktopHost&) = delete;

    // Shows the placeholder and asks for the first timeline once the loop runs.
    void start();
    // A refresh as if a reload request had come.
    void reload();

  private:
    static gboolean onTimer(gpointer data);
    static gboolean onRequest(gint fd, GIOCondition condition, gpointer data);
    void refresh();
    void wakeAt(widgetkit::RefreshSchedule::Clock::time_point due);

    double budgetMinutes_;
    RequestEntry request_;
    ShowEntry show_;
    // Absent when another host listens on the socket: then only the budget refreshes.
    std::unique_ptr<widgetkit::ReloadListener> listener_;
    guint listenerSource_ = 0;
    guint timer_ = 0;
    widgetkit::RefreshSchedule schedule_;
    bool refreshing_ = false;
    bool reloadWhileRefreshing_ = false;
};

}  // namespace lunoval::desktop
