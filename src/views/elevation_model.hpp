#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/calendar.hpp"
#include "platform/date.hpp"
#include "ui/geometry.hpp"

namespace lunoval {

// The moon's refracted altitude in degrees from a one-term lunar series: cheap enough to sample
// a whole day per render, and about as good as a chart a few dozen points tall can show.
double compactMoonAltitude(Date instant, double latitude, double longitude);

// A smooth made-up day for placeholders: 35·sin(π(h − 2)/12) + 15 degrees, h the UTC hour.
double placeholderAltitude(Date instant);

using AltitudeAt = std::function<double(Date)>;

// The extremes of the moon's altitude over the chart day, in degrees, with the sampled
// instants that reached them when they come from samples.
struct AltitudeRange {
    double maximum = 0;
    double minimum = 0;
    std::optional<Date> maximumAt;
    std::optional<Date> minimumAt;
};

// The placeholder record's altitude of the moon, in degrees.
inline constexpr double kPlaceholderPresentAltitude = 35;
// The placeholder's present moment: on the chart day beginning at `dayStart`, where the
// made-up day sets the moon at the placeholder's altitude, so chart and figures agree.
Date placeholderPresentTime(Date dayStart);

// The extremes of placeholderAltitude.
AltitudeRange placeholderRange();
// Every altitude there is, for a place whose zone is unknown.
AltitudeRange fullRange();

inline constexpr int kRangeSamples = 96;

// Sample `index` (0 to 95) of the range search: every quarter hour of the local day of `day`.
// A skipped wall-clock time moves to the end of the gap; a repeated one takes its first
// occurrence.
std::optional<Date> rangeSampleInstant(const Calendar& calendar, Date day, int index);
// The compact model's extremes over the range samples of the local day of `day`.
AltitudeRange sampledRange(const Calendar& calendar, Date day, double latitude, double longitude);

// The range the chart is scaled to: the placeholder's, every altitude when the place's zone is
// unknown, else the sampled local day of `day` in that zone.
AltitudeRange chartRange(bool isPlaceholder, const std::optional<TimeZone>& zone, Date day,
                         double latitude, double longitude);

// The start of the local day holding moonrise, else moonset, else `currentTime`.
Date chartDayStart(const std::optional<Date>& moonrise, const std::optional<Date>& moonset,
                   Date currentTime, const Calendar& calendar);

// Points kept free above and below the plot.
inline constexpr double kPlotInset = 8;

// Where altitudes and instants land in a chart of `size` points whose day begins at
// `dayStart`. The altitude axis spans the range widened by 5° each side, inside an 8-point
// margin at top and bottom.
class ElevationScale {
  public:
    ElevationScale(const AltitudeRange& range, Date dayStart, ui::Size size);

    [[nodiscard]] double lowest() const { return lowest_; }
    [[nodiscard]] double highest() const { return highest_; }
    // Clamped into the widened range first.
    [[nodiscard]] double y(double altitude) const;
    [[nodiscard]] double x(Date instant) const;
    [[nodiscard]] double horizonY() const { return y(0); }
    [[nodiscard]] Date dayStart() const { return dayStart_; }
    [[nodiscard]] ui::Size size() const { return size_; }

  private:
    double lowest_;
    double highest_;
    Date dayStart_;
    ui::Size size_;
};

// The curve: ten-minute samples from noon before the chart day to noon after it, kept from six
// hours before the day to six hours after, in time order.
std::vector<ui::Point> curvePoints(const ElevationScale& scale, const AltitudeAt& altitude);

// The height of a backdrop guide line at fraction `f` of a chart `height` points tall.
double guideY(double fraction, double height);

}  // namespace lunoval
