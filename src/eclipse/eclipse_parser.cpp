#include "eclipse/eclipse_parser.hpp"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <string>

#include "eclipse/catalogue_text.hpp"
#include "eclipse/eclipse_visibility.hpp"
#include "platform/calendar.hpp"
#include "platform/files.hpp"
#include "platform/log.hpp"

namespace lunoval {

namespace {

using Reason = EclipseParser::ParsingError::Reason;

const char* reasonName(Reason reason) {
    switch (reason) {
        case Reason::fileNotFound:
            return "fileNotFound";
        case Reason::fileReadError:
            return "fileReadError";
        case Reason::emptyFile:
            return "emptyFile";
    }
    return "";
}

std::optional<std::filesystem::path> catalogueFile(const BundleLocator& locator) {
    for (const auto identifier : {kFrameworkBundleIdentifier, kHostAppBundleIdentifier}) {
        const auto bundle = locator.bundle(identifier);
        if (!bundle) continue;
        if (auto path = bundle->url("events", "txt", "Data")) return path;
    }
    return std::nullopt;
}

}  // namespace

EclipseParser::ParsingError::ParsingError(Reason reason)
    : std::runtime_error(reasonName(reason)), reason_(reason) {}

EclipseParser& EclipseParser::shared() {
    static EclipseParser instance(BundleLocator::standard());
    return instance;
}

EclipseParser::EclipseParser(BundleLocator locator) : locator_(std::move(locator)) {}

std::shared_ptr<const EclipseTable> EclipseParser::stored(const TimeZone& yearZone) const {
    const std::shared_lock lock(tableMutex_);
    const auto found = tables_.find(yearZone.identifier());
    return found == tables_.end() ? nullptr : found->second;
}

std::shared_ptr<const EclipseTable> EclipseParser::parse(const TimeZone& yearZone) {
    if (auto table = stored(yearZone)) return table;

    const auto path = catalogueFile(locator_);
    if (!path) throw ParsingError(Reason::fileNotFound);
    const auto content = readWholeFile(*path);
    if (!content || !isUtf8(*content)) throw ParsingError(Reason::fileReadError);
    if (trimWhitespaceAndNewlines(*content).empty()) throw ParsingError(Reason::emptyFile);

    auto table = std::make_shared<const EclipseTable>(parseCatalogue(*content, yearZone));
    if (table->empty()) throw ParsingError(Reason::emptyFile);
    const std::unique_lock lock(tableMutex_);
    // Another thread may have read it meanwhile: every lookup then shares the first table.
    return tables_.try_emplace(yearZone.identifier(), table).first->second;
}

std::shared_ptr<const EclipseTable> EclipseParser::loadEvents(const TimeZone& yearZone) {
    try {
        return parse(yearZone);
    } catch (const ParsingError& error) {
        log::line(std::string("Error loading events: ") + error.what());
        return nullptr;
    }
}

std::shared_ptr<const EclipseEvent> EclipseParser::eclipseInfo(Date date, const TimeZone& zone,
                                                               std::optional<Solar::Observer> place,
                                                               const TimeZone& yearZone) {
    auto table = stored(yearZone);
    if (!table) table = loadEvents(yearZone);
    if (!table) return nullptr;

    if (!std::isfinite(date.timeIntervalSince1970())) return nullptr;
    // Only events within a few days can share the local day, even across a zone's day-long
    // jump; the table is in time order, so the first match is still the earliest.
    constexpr double kWindowSeconds = 3 * 86400.0;
    const auto first = table->lower_bound(date.addingTimeInterval(-kWindowSeconds));
    const auto last = table->upper_bound(date.addingTimeInterval(kWindowSeconds));
    const Calendar calendar(zone);
    const auto found = std::find_if(first, last, [&](const auto& entry) {
        return calendar.isDateInSameDay(entry.first, date);
    });
    if (found == last) return nullptr;
    EclipseEvent& event = *found->second;
    event.isVisible = !place || isVisibleFrom(event, zone, *place);
    return found->second;
}

}  // namespace lunoval
