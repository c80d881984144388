#include "platform/time_zone.hpp"

#include <date/tz.h>
#include <cmath>
#include <cstdlib>
#include <exception>

#include "platform/instant_range.hpp"

namespace lunoval {

std::optional<TimeZone> TimeZone::named(std::string_view identifier) {
    try {
        const auto* zone = date::locate_zone(identifier);
        return TimeZone(zone, std::string(identifier));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

TimeZone TimeZone::utc() {
    static const auto zone = named("UTC");
    return *zone;
}

std::optional<std::chrono::seconds> TimeZone::offsetFromUTC(Date date) const {
    const auto seconds = wholeSeconds(date);
    if (!seconds) return std::nullopt;
    return zone_->get_info(*seconds).offset;
}

namespace {

// TZ may be ":Area/City", "Area/City" or a path into the zone database.
std::optional<TimeZone> zoneFromTZVariable(std::string_view value) {
    if (value.starts_with(':')) value.remove_prefix(1);
    constexpr std::string_view root = "/usr/share/zoneinfo/";
    if (value.starts_with(root)) value.remove_prefix(root.size());
    if (value.empty()) return std::nullopt;
    return TimeZone::named(value);
}

}  // namespace

TimeZone environmentTimeZone() {
    if (const char* tz = std::getenv("TZ")) {
        if (auto zone = zoneFromTZVariable(tz)) return *zone;
    }
    try {
        const auto* zone = date::current_zone();
        if (auto named = TimeZone::named(zone->name())) return *named;
    } catch (const std::exception&) {
    }
    return TimeZone::utc();
}

}  // namespace lunoval
