#include "views/widget_text.hpp"

#include <cmath>

#include "platform/date_formatter.hpp"
#include "platform/localization.hpp"
#include "platform/text_case.hpp"

namespace lunoval {

namespace {

DateFormatter formatter(const LocalFormat& format) {
    return {format.locale, format.zone};
}

}  // namespace

int litPercent(double illumination) {
    return static_cast<int>(illumination * 100);
}

std::string illuminatedText(double illumination) {
    return std::to_string(litPercent(illumination)) + "% " + l10n::localized("illuminated");
}

std::string litText(double illumination) {
    // TRANSLATORS: Moon illumination percentage suffix
    return std::to_string(litPercent(illumination)) + "% " + l10n::localized("lit");
}

std::string elevationText(double altitudeDegrees) {
    return std::to_string(std::lround(altitudeDegrees)) + "°";
}

std::string phaseNameText(const Solar::SimpleMoonPhase& phase) {
    // TRANSLATORS: Moon phase name
    return l10n::localized(phase.phaseName.c_str());
}

std::string shortTimeText(Date date, const LocalFormat& format) {
    return formatter(format).shortTime(date);
}

std::string monthText(Date date, const LocalFormat& format) {
    return uppercased(formatter(format).pattern(date, "MMM"), format.locale);
}

std::string dayText(Date date, const LocalFormat& format) {
    return formatter(format).pattern(date, "d");
}

}  // namespace lunoval
