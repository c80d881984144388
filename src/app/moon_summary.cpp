#include "app/moon_summary.hpp"

#include <array>
#include <cmath>

#include "platform/date_formatter.hpp"
#include "platform/localization.hpp"

namespace lunoval {

namespace {

std::string timeOrDash(const DateFormatter& formatter, const std::optional<Date>& instant) {
    return instant ? formatter.shortTime(*instant) : "--:--";
}

std::string phaseSymbol(Solar::PhaseType phase) {
    static const std::array<const char*, 8> symbols{"🌑", "🌒", "🌓", "🌔", "🌕", "🌖", "🌗", "🌘"};
    return symbols.at(static_cast<std::size_t>(phase));
}

std::vector<std::string> detailLines(const MoonWidgetData& record, const LocalFormat& format) {
    const DateFormatter formatter{format.locale, format.zone};
    std::vector<std::string> lines;
    if (record.nextMoonPhase && record.nextPhaseTime) {
        lines.push_back(l10n::localized(record.nextMoonPhase->phaseName.c_str()) + " · " +
                        *record.nextPhaseTime);
    }
    lines.push_back("🌙 ↑ " + timeOrDash(formatter, record.moonrise) + " ↓ " +
                    timeOrDash(formatter, record.moonset));
    lines.push_back("☀ ↑ " + timeOrDash(formatter, record.sunrise) + " ↓ " +
                    timeOrDash(formatter, record.sunset));
    // Without words of our own, which every catalogue would have to translate.
    if (const auto& eclipse = record.eclipseInfo) {
        lines.push_back(eclipse->title + " · " + formatter.shortTime(eclipse->datetime) +
                        (eclipse->isVisible ? " · 👁" : ""));
    }
    return lines;
}

}  // namespace

std::string MoonSummary::title() const {
    return phaseName + " · " + std::to_string(litPercent) + " %";
}

std::optional<MoonSummary> moonSummary(const MoonWidgetEntry& entry) {
    if (!entry.widgetData || !entry.widgetData->currentMoonPhase) return std::nullopt;
    const auto& record = *entry.widgetData;
    const auto& phase = *record.currentMoonPhase;
    return MoonSummary{.symbol = phaseSymbol(phase.phaseType),
                       .phaseName = l10n::localized(phase.phaseName.c_str()),
                       .caseName = std::string(Solar::caseName(phase.phaseType)),
                       .litPercent = static_cast<int>(std::lround(phase.illumination * 100)),
                       .details = detailLines(record, entry.details.format)};
}

}  // namespace lunoval
