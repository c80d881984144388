#include "platform/time_zone.hpp"

#include <date/tz.h>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <map>
#include <string>

#include "platform/instant_range.hpp"
#include "platform/zone_rule.hpp"

namespace lunoval {

namespace {

// Zone files do not change under a running process: each thread reads a zone's rule once.
std::shared_ptr<const ZoneRule> futureRuleOf(std::string_view identifier) {
    thread_local std::map<std::string, std::shared_ptr<const ZoneRule>, std::less<>> rules;
    auto found = rules.find(identifier);
    if (found == rules.end()) {
        found = rules.emplace(identifier, ZoneRule::forZone(identifier)).first;
    }
    return found->second;
}

}  // namespace

std::optional<TimeZone> TimeZone::named(std::string_view identifier) {
    try {
        const auto* zone = date::locate_zone(identifier);
        return TimeZone(zone, std::string(identifier), futureRuleOf(identifier));
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
    return sysInfo(*seconds).offset;
}

namespace {

// The database marks the period after its last listed change as lasting to its final year.
bool isLastListedPeriod(const date::sys_info& info) {
    return info.end >= date::sys_days{date::year::max() / 1 / 1};
}

}  // namespace

date::sys_info TimeZone::sysInfo(date::sys_seconds instant) const {
    auto info = zone_->get_info(instant);
    if (futureRule_ && isLastListedPeriod(info)) return futureRule_->sysInfo(instant);
    return info;
}

date::local_info TimeZone::localInfo(date::local_seconds local) const {
    auto info = zone_->get_info(local);
    if (futureRule_ && info.result == date::local_info::unique && isLastListedPeriod(info.first)) {
        return futureRule_->localInfo(local);
    }
    return info;
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

EnvironmentZone environmentTimeZone() {
    if (const char* tz = std::getenv("TZ"); tz != nullptr && *tz != '\0') {
        if (auto zone = zoneFromTZVariable(tz)) return {*zone, std::nullopt};
        return {TimeZone::utc(), "TZ='" + std::string(tz) + "' names no time zone; using UTC"};
    }
    try {
        const auto* zone = date::current_zone();
        if (auto named = TimeZone::named(zone->name())) return {*named, std::nullopt};
    } catch (const std::exception&) {
    }
    return {TimeZone::utc(), std::nullopt};
}

}  // namespace lunoval
