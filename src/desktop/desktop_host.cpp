#include "desktop/desktop_host.hpp"

#include <glib-unix.h>

#include <algorithm>
#include <sstream>

#include "platform/log.hpp"

namespace lunoval::desktop {

namespace {

using Clock = widgetkit::RefreshSchedule::Clock;

std::unique_ptr<widgetkit::ReloadListener> listen() {
    try {
        auto listener = std::make_unique<widgetkit::ReloadListener>();
        log::line("ℹ️ Desktop: listening for reload requests on " + listener->path().string());
        return listener;
    } catch (const std::exception& error) {
        log::warning(std::string(error.what()) + "; refreshing on the budget alone");
        return nullptr;
    }
}

}  // namespace

DesktopHost::DesktopHost(double budgetMinutes, RequestEntry request, ShowEntry show)
    : budgetMinutes_(budgetMinutes),
      request_(std::move(request)),
      show_(std::move(show)),
      listener_(listen()) {
    if (listener_) {
        listenerSource_ = g_unix_fd_add(listener_->fd(), G_IO_IN, onRequest, this);
    }
}

DesktopHost::~DesktopHost() {
    if (timer_ != 0) g_source_remove(timer_);
    if (listenerSource_ != 0) g_source_remove(listenerSource_);
}

void DesktopHost::start() {
    request_(EntryKind::placeholder, show_);
    const auto now = Clock::now();
    schedule_ = widgetkit::RefreshSchedule::after(now, now, budgetMinutes_);
    wakeAt(now);
}

void DesktopHost::reload() {
    if (refreshing_) {
        reloadWhileRefreshing_ = true;
        return;
    }
    schedule_.requestReload(Clock::now());
    wakeAt(schedule_.due());
}

gboolean DesktopHost::onTimer(gpointer data) {
    auto* self = static_cast<DesktopHost*>(data);
    self->timer_ = 0;
    self->refresh();
    return G_SOURCE_REMOVE;
}

gboolean DesktopHost::onRequest(gint /*fd*/, GIOCondition /*condition*/, gpointer data) {
    auto* self = static_cast<DesktopHost*>(data);
    if (self->listener_->drain()) self->reload();
    return G_SOURCE_CONTINUE;
}

// The request runs the loop while it waits for location services, so the widgets stay drawn
// and a reload request meanwhile is kept for after it.
void DesktopHost::refresh() {
    if (schedule_.dueToReload()) log::line("📅 Desktop: refreshing after a reload request");
    refreshing_ = true;
    const auto start = Clock::now();
    // Thrown through GLib's loop, a failure would end the program; the widgets keep the last
    // entry and the next refresh asks again.
    try {
        request_(EntryKind::timeline, show_);
    } catch (const std::exception& error) {
        log::warning(std::string("the refresh failed: ") + error.what());
    }
    refreshing_ = false;
    schedule_ = widgetkit::RefreshSchedule::after(start, Clock::now(), budgetMinutes_);
    log::line("🔄 Desktop: refreshed");
    std::ostringstream next;
    next << "📅 Desktop: next refresh in " << budgetMinutes_ << " minutes";
    log::line(next.str());
    if (reloadWhileRefreshing_) {
        reloadWhileRefreshing_ = false;
        schedule_.requestReload(Clock::now());
    }
    wakeAt(schedule_.due());
}

void DesktopHost::wakeAt(Clock::time_point due) {
    if (timer_ != 0) g_source_remove(timer_);
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - Clock::now());
    timer_ = g_timeout_add(guint(std::max<long long>(0, wait.count())), onTimer, this);
}

}  // namespace lunoval::desktop
