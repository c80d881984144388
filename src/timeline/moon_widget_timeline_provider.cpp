#include "timeline/moon_widget_timeline_provider.hpp"

#include <date/date.h>
#include <algorithm>
#include <mutex>
#include <vector>

#include "locations/widget_location_cache.hpp"
#include "locations/widget_location_manager.hpp"
#include "platform/device.hpp"
#include "platform/log.hpp"
#include "timeline/make_widget_data.hpp"

namespace lunoval {

namespace {

constexpr double kLocationTimeoutSeconds = 8.0;
constexpr double kRetrySeconds = 15 * 60.0;

// What one timeline request shares between the time-out and the location answer.
struct PendingTimeline {
    Date start;
    bool resumed = false;
    std::shared_ptr<WidgetLocationManager> manager;
    std::function<void(MoonWidgetEntry)> deliver;
};

// Holds each fetch's manager until the fetch ends. One that answers late without a location
// never ends, so its manager stays for the rest of the process. Requests come from the host's
// tasks on any thread; fetches end on the main queue.
class FetchesInFlight {
  public:
    void add(std::shared_ptr<PendingTimeline> fetch) {
        const std::scoped_lock lock(mutex_);
        fetches_.push_back(std::move(fetch));
    }
    void remove(const PendingTimeline* fetch) {
        const std::scoped_lock lock(mutex_);
        std::erase_if(fetches_, [fetch](const auto& f) { return f.get() == fetch; });
    }

  private:
    std::mutex mutex_;
    std::vector<std::shared_ptr<PendingTimeline>> fetches_;
};

FetchesInFlight& fetchesInFlight() {
    static FetchesInFlight fetches;
    return fetches;
}

// Released on the next turn of the queue: the manager's own callback is still running now.
void endFetch(MainQueue& queue, const PendingTimeline* fetch) {
    queue.async([fetch] { fetchesInFlight().remove(fetch); });
}

}  // namespace

std::string standardDescription(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date.sinceEpoch);
    return date::format("%F %T +0000", date::sys_seconds{seconds});
}

MoonWidgetTimelineProvider::MoonWidgetTimelineProvider(
    MainQueue& queue, MakePlatformLocationManager makePlatformLocationManager,
    UserDefaults defaults)
    : queue_(queue),
      makePlatformLocationManager_(std::move(makePlatformLocationManager)),
      defaults_(std::move(defaults)) {}

MoonWidgetEntry MoonWidgetTimelineProvider::placeholder(
    const widgetkit::Context& /*context*/) const {
    const Date now = device::now();
    return {.date = now, .widgetData = MoonWidgetData::placeholder(now)};
}

void MoonWidgetTimelineProvider::snapshot(
    const ConfigurationAppIntent& /*configuration*/, const widgetkit::Context& context,
    const std::function<void(MoonWidgetEntry)>& completion) const {
    if (context.isPreview) {
        completion(placeholder(context));
        return;
    }
    WidgetLocationManager manager(makePlatformLocationManager_(), defaults_);
    manager.requestLocation(false, [&](std::optional<Location> location, bool, bool authorized) {
        auto record = makeWidgetData(location, authorized, defaults_);
        completion({.date = device::now(), .widgetData = std::move(record)});
    });
}

void MoonWidgetTimelineProvider::timeline(
    const ConfigurationAppIntent& /*configuration*/, const widgetkit::Context& /*context*/,
    std::function<void(widgetkit::Timeline<MoonWidgetEntry>)> completion) const {
    const Date start = device::now();
    log::line("🔄 Widget: Starting timeline update at " + standardDescription(start));

    auto pending = std::make_shared<PendingTimeline>();
    pending->start = start;
    pending->manager =
        std::make_shared<WidgetLocationManager>(makePlatformLocationManager_(), defaults_);
    pending->deliver = [start, completion = std::move(completion)](MoonWidgetEntry entry) {
        if (!entry.widgetData || entry.widgetData->needsLocationPermission) {
            log::line("ℹ️ Widget: Will retry in 15 minutes");
        }
        log::line("📅 Widget: Next update at " +
                  standardDescription(start.addingTimeInterval(kRetrySeconds)));
        completion({.entries = {std::move(entry)}, .policy = widgetkit::ReloadPolicy::atEnd});
    };
    fetchesInFlight().add(pending);

    // The closures outlive this call and may outlive the provider: they hold copies.
    queue_.asyncAfter(kLocationTimeoutSeconds, [defaults = defaults_, pending] {
        if (pending->resumed) return;
        pending->resumed = true;
        log::line("⏱️ Widget: Location fetch timed out");
        const auto* locationManager = pending->manager->locationManager();
        const bool authorized =
            locationManager != nullptr && locationManager->isAuthorizedForWidgetUpdates();
        pending->deliver({.date = pending->start,
                          .widgetData = makeWidgetData(std::nullopt, authorized, defaults)});
    });
    PendingTimeline* fetch = pending.get();
    fetch->manager->requestLocation(
        true, [defaults = defaults_, &queue = queue_, fetch](std::optional<Location> location, bool,
                                                             bool authorized) {
            if (fetch->resumed) {
                if (!location) return;
                widgetcache::saveLocationToCache(defaults, *location);
                endFetch(queue, fetch);
                return;
            }
            fetch->resumed = true;
            fetch->deliver({.date = fetch->start,
                            .widgetData = makeWidgetData(location, authorized, defaults)});
            endFetch(queue, fetch);
        });
}

}  // namespace lunoval
