#include "phases/moon_phase_data_manager.hpp"

#include <algorithm>
#include <mutex>
#include <string>

#include "phases/phase_table_parser.hpp"
#include "platform/calendar.hpp"
#include "platform/files.hpp"
#include "platform/log.hpp"

namespace lunoval {

namespace {

std::vector<Bundle> candidateBundles(const BundleLocator& locator) {
    std::vector<Bundle> bundles;
    for (const auto identifier : {kFrameworkBundleIdentifier, kHostAppBundleIdentifier}) {
        if (auto bundle = locator.bundle(identifier)) bundles.push_back(std::move(*bundle));
    }
    return bundles;
}

std::string quotedList(const std::vector<Bundle>& bundles) {
    std::string list = "[";
    for (const auto& bundle : bundles) {
        if (bundle.identifier.empty()) continue;
        if (list.size() > 1) list += ", ";
        list += '"' + bundle.identifier + '"';
    }
    return list + "]";
}

}  // namespace

MoonPhaseDataManager& MoonPhaseDataManager::shared() {
    static MoonPhaseDataManager instance(BundleLocator::standard());
    return instance;
}

MoonPhaseDataManager::MoonPhaseDataManager(BundleLocator locator) : locator_(std::move(locator)) {}

std::shared_ptr<const PhaseYear> MoonPhaseDataManager::cached(int year) const {
    const std::shared_lock lock(cacheMutex_);
    const auto found = cache_.find(year);
    return found == cache_.end() ? nullptr : found->second;
}

std::optional<Bundle> MoonPhaseDataManager::bundleWithYear(int year) const {
    const auto candidates = candidateBundles(locator_);
    const auto name = std::to_string(year);
    for (const auto& bundle : candidates) {
        if (bundle.url(name, "plist", "Data")) {
            log::line("✅ Found plist in bundle: " +
                      (bundle.identifier.empty() ? std::string("unknown") : bundle.identifier) +
                      " with subdirectory");
            return bundle;
        }
    }
    log::line("❌ Could not find " + name + ".plist in any bundle");
    log::line("   Tried bundles: " + quotedList(candidates));
    return std::nullopt;
}

std::shared_ptr<const PhaseYear> MoonPhaseDataManager::loadYear(int year) {
    if (auto yearTable = cached(year)) return yearTable;

    const auto bundle = bundleWithYear(year);
    if (!bundle) return nullptr;
    const auto name = std::to_string(year);
    const auto bytes = readWholeFile(*bundle->url(name, "plist", "Data"));
    auto parsed = bytes ? parsePhaseYear(*bytes) : std::nullopt;
    if (!parsed) {
        log::line("❌ Could not load or parse " + name + ".plist");
        return nullptr;
    }
    auto table = std::make_shared<const PhaseYear>(std::move(*parsed));
    const std::unique_lock lock(cacheMutex_);
    cache_.insert_or_assign(year, table);
    return table;
}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): year and month in calendar order
std::vector<MoonPhaseEvent> MoonPhaseDataManager::events(int year, int month) {
    if (const auto table = cached(year); table && !table->empty()) {
        if (const auto found = table->find(month); found != table->end()) return found->second;
    }
    if (const auto table = loadYear(year)) {
        if (const auto found = table->find(month); found != table->end()) return found->second;
    }
    return {};
}

std::optional<NextPhase> MoonPhaseDataManager::nextPhase(Date date, const TimeZone& zone) {
    const Calendar calendar(zone);
    const auto today = calendar.components(date);
    if (!today) return std::nullopt;

    auto monthEvents = events(today->year, today->month);
    std::stable_sort(monthEvents.begin(), monthEvents.end(),
                     [](const auto& a, const auto& b) { return a.day < b.day; });
    for (const auto& event : monthEvents) {
        const auto instant =
            eventDate(today->year, today->month, event.day, event.hour, event.minute);
        if (!instant) continue;
        const auto local = calendar.components(*instant);
        if (!local || local->day < today->day) continue;
        return NextPhase{.event = event, .daysUntil = local->day - today->day};
    }
    return std::nullopt;
}

std::optional<Date> MoonPhaseDataManager::eventDate(std::int64_t year, std::int64_t month,
                                                    std::int64_t day, std::int64_t hour,
                                                    std::int64_t minute) {
    return Calendar(TimeZone::utc()).date(year, month, day, hour, minute, 0);
}

}  // namespace lunoval
