#include "astro/moon_phase.hpp"

#include "astro/moon_illumination.hpp"
#include "platform/calendar.hpp"

namespace lunoval::Solar {

namespace {

bool isWaxing(double phaseAngle) {
    return phaseAngle > 0;
}

std::optional<PhaseType> tabulatedPhaseOnDay(const DateComponents& local, const TimeZone& zone,
                                             const PhaseTable& table) {
    const Calendar utc(TimeZone::utc());
    const Calendar calendar(zone);
    for (const auto& event : table(local.year, local.month)) {
        const auto instant = utc.date(local.year, local.month, event.day, event.hour, event.minute);
        if (!instant) continue;
        const auto eventLocal = calendar.components(*instant);
        if (eventLocal && eventLocal->day == local.day) return principalPhaseType(event.phase);
    }
    return std::nullopt;
}

// Without a tabulated phase that day the moon is only ever a crescent or a gibbous.
PhaseType crescentOrGibbous(const Illumination& illumination) {
    const bool waxing = isWaxing(illumination.phaseAngle);
    if (illumination.fraction < 0.5) {
        return waxing ? PhaseType::waxingCrescent : PhaseType::waningCrescent;
    }
    return waxing ? PhaseType::waxingGibbous : PhaseType::waningGibbous;
}

PhaseType byIlluminationAlone(const Illumination& illumination) {
    const bool waxing = isWaxing(illumination.phaseAngle);
    const double fraction = illumination.fraction;
    if (fraction < 0.05) return PhaseType::newMoon;
    if (fraction < 0.45) return waxing ? PhaseType::waxingCrescent : PhaseType::waningCrescent;
    if (fraction < 0.55) return waxing ? PhaseType::firstQuarter : PhaseType::lastQuarter;
    if (fraction < 0.95) return waxing ? PhaseType::waxingGibbous : PhaseType::waningGibbous;
    return PhaseType::fullMoon;
}

SimpleMoonPhase makePhase(const Illumination& illumination, PhaseType type, double tilt) {
    return {
        .illumination = illumination.fraction,
        .phaseAngle = illumination.phaseAngle,
        .phaseName = std::string(rawValue(type)),
        .phaseType = type,
        .tiltAngle = tilt,
    };
}

}  // namespace

PhaseType principalPhaseType(MoonPhaseEvent::PhaseType phase) {
    return static_cast<PhaseType>(2 * static_cast<int>(phase));
}

SimpleMoonPhase moonPhase(Date date, const TimeZone& zone, const Tilt& tilt, Observer observer,
                          const PhaseTable& table) {
    const auto illumination = moonIllumination(date);
    const auto local = Calendar(zone).components(date);
    if (!local) {
        // The fallback tilts at the date itself, whatever moment was asked for.
        const double angle =
            tilt.kind == Tilt::Kind::none ? 0.0 : tiltAngle(Tilt::at(date), observer);
        return makePhase(illumination, byIlluminationAlone(illumination), angle);
    }
    const auto type =
        tabulatedPhaseOnDay(*local, zone, table).value_or(crescentOrGibbous(illumination));
    return makePhase(illumination, type, tiltAngle(tilt, observer));
}

}  // namespace lunoval::Solar
