#pragma once

#include <vector>

#include "platform/date.hpp"
#include "timeline/widget_details.hpp"
#include "ui/geometry.hpp"

namespace lunoval {

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

// The curve's samples from six hours before the day to six hours after, in time order.
std::vector<ui::Point> curvePoints(const ElevationScale& scale,
                                   const std::vector<AltitudeSample>& samples);

// The height of a backdrop guide line at fraction `f` of a chart `height` points tall.
double guideY(double fraction, double height);

}  // namespace lunoval
