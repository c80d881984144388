#include "timeline/elevation_day.hpp"

#include <cmath>
#include <functional>
#include <numbers>

#include "astro/moon_position.hpp"

namespace lunoval {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kSecondsPerDay = 86'400;

using AltitudeAt = std::function<double(Date)>;

AltitudeRange placeholderRange() {
    return {.maximum = 50, .minimum = -20};
}

// Every altitude there is, for a place whose zone is unknown.
AltitudeRange fullRange() {
    return {.maximum = 90, .minimum = -90};
}

// The placeholder's, every altitude when the record's zone is unknown, else the sampled local
// day in that zone.
AltitudeRange chartRange(const MoonWidgetData& record, Date dayStart) {
    if (record.isPlaceholder) return placeholderRange();
    const auto zone = TimeZone::named(record.timezone);
    if (!zone) return fullRange();
    return sampledRange(Calendar(*zone), dayStart, {record.latitude, record.longitude});
}

std::vector<AltitudeSample> curve(Date dayStart, const AltitudeAt& altitude) {
    constexpr int kIntervals = 288;
    constexpr double kSpan = 2 * kSecondsPerDay;
    const Date start = dayStart.addingTimeInterval(-kSecondsPerDay / 2);
    std::vector<AltitudeSample> samples;
    samples.reserve(kIntervals + 1);
    for (int i = 0; i <= kIntervals; ++i) {
        const Date instant = start.addingTimeInterval(i * (kSpan / kIntervals));
        samples.push_back({instant, altitude(instant)});
    }
    return samples;
}

}  // namespace

double placeholderAltitude(Date instant) {
    const double hour = std::fmod(instant.timeIntervalSince1970() / 3600, 24);
    return 35 * std::sin(kPi * (hour - 2) / 12) + 15;
}

Date placeholderPresentTime(Date dayStart) {
    // The made-up curve descends through the placeholder's 35° at this UTC hour, south-west of
    // the meridian as the placeholder's azimuth has it.
    const double hour = 14 - 12 / kPi * std::asin((kPlaceholderPresentAltitude - 15) / 35);
    const double day = std::floor(dayStart.timeIntervalSince1970() / 86400) * 86400;
    const Date sameDay = Date::fromTimeIntervalSince1970(day + hour * 3600);
    return sameDay < dayStart ? sameDay.addingTimeInterval(86400) : sameDay;
}

std::optional<Date> rangeSampleInstant(const Calendar& calendar, Date day, int index) {
    constexpr int kSamplesPerHour = 4;
    constexpr int kMinutesPerSample = 15;
    return calendar.dateBySettingTime(index / kSamplesPerHour,
                                      index % kSamplesPerHour * kMinutesPerSample, 0, day);
}

AltitudeRange sampledRange(const Calendar& calendar, Date day, Solar::Observer place) {
    AltitudeRange range{.maximum = -90, .minimum = 90};
    for (int index = 0; index < kRangeSamples; ++index) {
        const auto instant = rangeSampleInstant(calendar, day, index);
        if (!instant) continue;
        const double altitude = Solar::moonPosition(*instant, place).altitude;
        if (altitude > range.maximum) {
            range.maximum = altitude;
            range.maximumAt = instant;
        }
        if (altitude < range.minimum) {
            range.minimum = altitude;
            range.minimumAt = instant;
        }
    }
    return range;
}

Date chartDayStart(const std::optional<Date>& moonrise, const std::optional<Date>& moonset,
                   Date currentTime, const Calendar& calendar) {
    const Date reference = moonrise.value_or(moonset.value_or(currentTime));
    return calendar.startOfDay(reference).value_or(reference);
}

ElevationDay elevationDay(const MoonWidgetData& record, const TimeZone& zone) {
    const Calendar calendar(zone);
    const Solar::Observer place{record.latitude, record.longitude};
    const AltitudeAt altitude =
        record.isPlaceholder ? AltitudeAt(placeholderAltitude) : AltitudeAt([place](Date instant) {
            return Solar::moonPosition(instant, place).altitude;
        });
    const auto sample = [&](Date instant) { return AltitudeSample{instant, altitude(instant)}; };

    ElevationDay day;
    day.dayStart = chartDayStart(record.moonrise, record.moonset, record.selectedTime, calendar);
    day.range = chartRange(record, day.dayStart);
    day.curve = curve(day.dayStart, altitude);
    if (record.moonrise) day.rise = sample(*record.moonrise);
    if (record.moonset) day.set = sample(*record.moonset);
    day.present =
        sample(record.isPlaceholder ? placeholderPresentTime(day.dayStart) : record.selectedTime);
    day.noon = calendar.dateBySettingTime(12, 0, 0, day.dayStart);
    return day;
}

}  // namespace lunoval
