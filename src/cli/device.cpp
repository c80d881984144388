#include "cli/device.hpp"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include "platform/log.hpp"
#include "platform/usable_locale.hpp"

namespace lunoval::device {

namespace {

struct Overrides {
    std::mutex mutex;
    std::optional<Date> now;
    std::optional<TimeZone> zone;
    std::optional<std::string> locale;
    std::optional<LocationService> locationService;
};

Overrides& overrides() {
    static Overrides instance;
    return instance;
}

// "de_DE.UTF-8@euro" names the locale "de_DE"; "C" and "POSIX" name no language.
std::string localeFromEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') continue;
        std::string_view text = value;
        text = text.substr(0, text.find_first_of(".@"));
        if (text == "C" || text == "POSIX" || text.empty()) break;
        return std::string(text);
    }
    return "en_US";
}

// Warns once a process: a host that sets the locale again has nothing new to say.
std::string usable(std::string_view identifier) {
    static std::atomic<bool> warned{false};
    auto [usable, warning] = usableLocale(identifier);
    if (warning && !warned.exchange(true)) log::warning(*warning);
    return usable;
}

TimeZone zoneFromEnvironment() {
    auto [zone, warning] = environmentTimeZone();
    if (warning) log::warning(*warning);
    return zone;
}

}  // namespace

Date now() {
    return clock()();
}

Clock clock() {
    std::scoped_lock lock(overrides().mutex);
    return overrides().now ? fixedClock(*overrides().now) : systemClock();
}

void fixNow(std::optional<Date> instant) {
    std::scoped_lock lock(overrides().mutex);
    overrides().now = instant;
}

TimeZone timeZone() {
    {
        std::scoped_lock lock(overrides().mutex);
        if (overrides().zone) return *overrides().zone;
    }
    static const TimeZone fromEnvironment = zoneFromEnvironment();
    return fromEnvironment;
}

void setTimeZone(std::optional<TimeZone> zone) {
    std::scoped_lock lock(overrides().mutex);
    overrides().zone = std::move(zone);
}

std::string localeIdentifier() {
    {
        std::scoped_lock lock(overrides().mutex);
        if (overrides().locale) return *overrides().locale;
    }
    static const std::string fromEnvironment = usable(localeFromEnvironment());
    return fromEnvironment;
}

void setLocaleIdentifier(std::optional<std::string> identifier) {
    if (identifier) identifier = usable(*identifier);
    std::scoped_lock lock(overrides().mutex);
    overrides().locale = std::move(identifier);
}

LocationService locationService() {
    std::scoped_lock lock(overrides().mutex);
    return overrides().locationService.value_or(LocationService{LocationService::Kind::automatic});
}

void setLocationService(std::optional<LocationService> service) {
    std::scoped_lock lock(overrides().mutex);
    overrides().locationService = service;
}

RequestContext requestContext(MainQueue& queue) {
    const auto zone = timeZone();
    return {.clock = clock(),
            .deviceZone = zone,
            .locale = localeIdentifier(),
            .makeLocationManager = [service = locationService(),
                                    &queue] { return makePlatformLocationManager(service, queue); },
            .sources = AstronomySources::shared(zone)};
}

}  // namespace lunoval::device
