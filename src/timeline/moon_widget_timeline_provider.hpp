#pragma once

#include <functional>
#include <memory>

#include "platform/main_queue.hpp"
#include "platform/user_defaults.hpp"
#include "platform/widgetkit.hpp"
#include "timeline/moon_widget_data.hpp"
#include "timeline/request_context.hpp"

namespace lunoval {

// Answers the widget host for all four widgets: a placeholder, a snapshot, or a timeline of
// one entry that the host reloads when it sees fit. Holds no state of its own.
class MoonWidgetTimelineProvider {
  public:
    MoonWidgetTimelineProvider(MainQueue& queue, RequestContext context, UserDefaults defaults);

    [[nodiscard]] MoonWidgetEntry placeholder(const widgetkit::Context& context) const;
    // Never waits: a preview answers at once and a snapshot asks for no fresh fix.
    void snapshot(const ConfigurationAppIntent& configuration, const widgetkit::Context& context,
                  const std::function<void(MoonWidgetEntry)>& completion) const;
    // Races the location fetch against an 8-second time-out on the main queue; whichever comes
    // first answers, once. The fetch may go on after that to cache a late fix, for at most one
    // more time-out; `finished` is called once its location manager is gone.
    void timeline(const ConfigurationAppIntent& configuration, const widgetkit::Context& context,
                  std::function<void(widgetkit::Timeline<MoonWidgetEntry>)> completion,
                  std::function<void()> finished = {}) const;

  private:
    MainQueue& queue_;
    // Shared with the closures of requests that outlive the provider.
    std::shared_ptr<const RequestContext> context_;
    UserDefaults defaults_;
};

// The host's standard description of an instant: "2025-10-09 08:00:00 +0000".
std::string standardDescription(Date date);

}  // namespace lunoval
