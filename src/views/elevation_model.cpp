#include "views/elevation_model.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lunoval {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kSinObliquity = 0.39778370349342274;
constexpr double kCosObliquity = 0.9174792233260962;
constexpr double kSecondsPerDay = 86'400;
constexpr double kRangeMargin = 5;

constexpr double radians(double degrees) {
    return degrees * kPi / 180;
}

double refracted(double altitude) {
    const double h = std::max(altitude, 0.0);
    return altitude + 0.0002967 / std::tan(h + 0.00312536 / (h + 0.08901179));
}

}  // namespace

double compactMoonAltitude(Date instant, double latitude, double longitude) {
    const double d =
        instant.timeIntervalSince1970() * 1000 / 86'400'000 - 0.5 + 2'440'588 - 2'451'545;
    const double meanLongitude = radians(218.316 + 13.176396 * d);
    const double meanAnomaly = radians(134.963 + 13.064993 * d);
    const double nodeDistance = radians(93.272 + 13.22935 * d);

    const double l = meanLongitude + 0.10976375665792337 * std::sin(meanAnomaly);
    const double b = 0.08950048404226922 * std::sin(nodeDistance);
    const double alpha =
        std::atan2(std::sin(l) * kCosObliquity - std::tan(b) * kSinObliquity, std::cos(l));
    const double delta =
        std::asin(std::sin(b) * kCosObliquity + std::cos(b) * kSinObliquity * std::sin(l));

    const double theta = radians(280.16 + 360.9856235 * d) + radians(longitude);
    const double hourAngle = theta - alpha;
    const double phi = radians(latitude);
    const double h = std::asin(std::sin(phi) * std::sin(delta) +
                               std::cos(phi) * std::cos(delta) * std::cos(hourAngle));
    return refracted(h) * 180 / kPi;
}

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

AltitudeRange placeholderRange() {
    return {.maximum = 50, .minimum = -20};
}

AltitudeRange fullRange() {
    return {.maximum = 90, .minimum = -90};
}

std::optional<Date> rangeSampleInstant(const Calendar& calendar, Date day, int index) {
    constexpr int kSamplesPerHour = 4;
    constexpr int kMinutesPerSample = 15;
    return calendar.dateBySettingTime(index / kSamplesPerHour,
                                      index % kSamplesPerHour * kMinutesPerSample, 0, day);
}

AltitudeRange sampledRange(const Calendar& calendar, Date day, double latitude, double longitude) {
    AltitudeRange range{.maximum = -90, .minimum = 90};
    for (int index = 0; index < kRangeSamples; ++index) {
        const auto instant = rangeSampleInstant(calendar, day, index);
        if (!instant) continue;
        const double altitude = compactMoonAltitude(*instant, latitude, longitude);
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

AltitudeRange chartRange(bool isPlaceholder, const std::optional<TimeZone>& zone, Date day,
                         double latitude, double longitude) {
    if (isPlaceholder) return placeholderRange();
    if (!zone) return fullRange();
    return sampledRange(Calendar(*zone), day, latitude, longitude);
}

Date chartDayStart(const std::optional<Date>& moonrise, const std::optional<Date>& moonset,
                   Date currentTime, const Calendar& calendar) {
    const Date reference = moonrise.value_or(moonset.value_or(currentTime));
    return calendar.startOfDay(reference).value_or(reference);
}

ElevationScale::ElevationScale(const AltitudeRange& range, Date dayStart, ui::Size size)
    : lowest_(range.minimum - kRangeMargin),
      highest_(range.maximum + kRangeMargin),
      dayStart_(dayStart),
      size_(size) {}

double ElevationScale::y(double altitude) const {
    const double a = std::max(lowest_, std::min(altitude, highest_));
    const double height = size_.height;
    return height - (height - 2 * kPlotInset) * (a - lowest_) / (highest_ - lowest_) - kPlotInset;
}

double ElevationScale::x(Date instant) const {
    return size_.width * (instant.timeIntervalSince1970() - dayStart_.timeIntervalSince1970()) /
           kSecondsPerDay;
}

std::vector<ui::Point> curvePoints(const ElevationScale& scale, const AltitudeAt& altitude) {
    constexpr int kIntervals = 288;
    constexpr double kSpan = 2 * kSecondsPerDay;
    const Date start = scale.dayStart().addingTimeInterval(-kSecondsPerDay / 2);
    const double width = scale.size().width;
    std::vector<ui::Point> points;
    for (int i = 0; i <= kIntervals; ++i) {
        const Date instant = start.addingTimeInterval(i * (kSpan / kIntervals));
        const ui::Point point{scale.x(instant), scale.y(altitude(instant))};
        if (point.x >= -0.25 * width && point.x <= 1.25 * width) points.push_back(point);
    }
    return points;
}

double guideY(double fraction, double height) {
    return 0.9 * height * (1 - fraction) + kPlotInset;
}

}  // namespace lunoval
