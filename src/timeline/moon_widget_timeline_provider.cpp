#include "timeline/moon_widget_timeline_provider.hpp"

#include <date/date.h>

#include "locations/widget_location_cache.hpp"
#include "locations/widget_location_manager.hpp"
#include "platform/log.hpp"
#include "timeline/make_widget_data.hpp"

namespace lunoval {

namespace {

constexpr double kLocationTimeoutSeconds = 8.0;
constexpr double kRetrySeconds = 15 * 60.0;

// What one timeline request shares between the time-out and the location answers. The
// manager is held here until the fetch ends.
struct PendingTimeline {
    Date start;
    bool resumed = false;
    std::shared_ptr<WidgetLocationManager> manager;
    std::function<void(MoonWidgetEntry)> deliver;
    std::function<void()> finished;
};

void end(PendingTimeline& fetch) {
    if (!fetch.manager) return;
    fetch.manager.reset();
    if (fetch.finished) fetch.finished();
}

// On the next turn of the queue: the manager's own callback may be running now.
void release(MainQueue& queue, const std::shared_ptr<PendingTimeline>& fetch) {
    queue.async([fetch] { end(*fetch); });
}

// Once the entry is out, a fix still on its way may refresh the cache for later timelines,
// given as long again as the entry was. Looked at on the next turn: a manager asks for a
// background fix only after it has answered.
void releaseAfterAnswer(MainQueue& queue, const std::shared_ptr<PendingTimeline>& fetch) {
    queue.async([&queue, fetch] {
        if (fetch->manager && fetch->manager->isAwaitingFix()) {
            queue.asyncAfter(kLocationTimeoutSeconds, [fetch] { end(*fetch); });
        } else {
            end(*fetch);
        }
    });
}

}  // namespace

std::string standardDescription(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date.sinceEpoch);
    return date::format("%F %T +0000", date::sys_seconds{seconds});
}

MoonWidgetTimelineProvider::MoonWidgetTimelineProvider(MainQueue& queue, RequestContext context,
                                                       UserDefaults defaults)
    : queue_(queue),
      context_(std::make_shared<const RequestContext>(std::move(context))),
      defaults_(std::move(defaults)) {}

MoonWidgetEntry MoonWidgetTimelineProvider::placeholder(
    const widgetkit::Context& /*context*/) const {
    const Date now = context_->clock();
    return {.date = now, .widgetData = MoonWidgetData::placeholder(now)};
}

void MoonWidgetTimelineProvider::snapshot(
    const ConfigurationAppIntent& /*configuration*/, const widgetkit::Context& context,
    const std::function<void(MoonWidgetEntry)>& completion) const {
    if (context.isPreview) {
        completion(placeholder(context));
        return;
    }
    WidgetLocationManager manager(context_->makeLocationManager(), defaults_, context_->clock);
    manager.requestLocation(
        WidgetLocationManager::FreshFix::notAllowed,
        [&](std::optional<Location> location, bool, bool authorized) {
            auto record = makeWidgetData(location, authorized, defaults_, *context_);
            completion({.date = context_->clock(), .widgetData = std::move(record)});
        });
}

void MoonWidgetTimelineProvider::timeline(
    const ConfigurationAppIntent& /*configuration*/, const widgetkit::Context& /*context*/,
    std::function<void(widgetkit::Timeline<MoonWidgetEntry>)> completion,
    std::function<void()> finished) const {
    const Date start = context_->clock();
    log::line("🔄 Widget: Starting timeline update at " + standardDescription(start));

    auto pending = std::make_shared<PendingTimeline>();
    pending->start = start;
    pending->manager = std::make_shared<WidgetLocationManager>(context_->makeLocationManager(),
                                                               defaults_, context_->clock);
    pending->deliver = [start, completion = std::move(completion)](MoonWidgetEntry entry) {
        if (!entry.widgetData || entry.widgetData->needsLocationPermission) {
            log::line("ℹ️ Widget: Will retry in 15 minutes");
        }
        log::line("📅 Widget: Next update at " +
                  standardDescription(start.addingTimeInterval(kRetrySeconds)));
        completion({.entries = {std::move(entry)}, .policy = widgetkit::ReloadPolicy::atEnd});
    };
    pending->finished = std::move(finished);

    // The closures outlive this call and may outlive the provider: they hold copies.
    queue_.asyncAfter(kLocationTimeoutSeconds, [defaults = defaults_, context = context_,
                                                &queue = queue_, pending] {
        if (pending->resumed || !pending->manager) return;
        pending->resumed = true;
        log::line("⏱️ Widget: Location fetch timed out");
        const auto* locationManager = pending->manager->locationManager();
        const bool authorized =
            locationManager != nullptr && locationManager->isAuthorizedForWidgetUpdates();
        pending->deliver(
            {.date = pending->start,
             .widgetData = makeWidgetData(std::nullopt, authorized, defaults, *context)});
        releaseAfterAnswer(queue, pending);
    });
    // The manager keeps its answer's closure, so the closure holds the request only weakly: the
    // queue's blocks own it, and a queue dropped with a fetch still open frees all of it.
    pending->manager->requestLocation(
        WidgetLocationManager::FreshFix::allowed,
        [defaults = defaults_, context = context_, &queue = queue_, weak = std::weak_ptr(pending)](
            std::optional<Location> location, bool, bool authorized) {
            const auto pending = weak.lock();
            if (!pending) return;
            if (pending->resumed) {
                // A late answer without a place keeps the manager: a later one may bring it.
                if (!location) return;
                widgetcache::saveLocationToCache(defaults, *location, context->clock());
                release(queue, pending);
                return;
            }
            pending->resumed = true;
            pending->deliver(
                {.date = pending->start,
                 .widgetData = makeWidgetData(location, authorized, defaults, *context)});
            releaseAfterAnswer(queue, pending);
        });
}

}  // namespace lunoval
