#include "views/elevation_model.hpp"

#include <algorithm>
#include <cmath>

namespace lunoval {

namespace {

constexpr double kSecondsPerDay = 86'400;
constexpr double kRangeMargin = 5;

}  // namespace

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

std::vector<ui::Point> curvePoints(const ElevationScale& scale,
                                   const std::vector<AltitudeSample>& samples) {
    const double width = scale.size().width;
    std::vector<ui::Point> points;
    for (const auto& sample : samples) {
        const ui::Point point{scale.x(sample.instant), scale.y(sample.altitude)};
        if (point.x >= -0.25 * width && point.x <= 1.25 * width) points.push_back(point);
    }
    return points;
}

double guideY(double fraction, double height) {
    return 0.9 * height * (1 - fraction) + kPlotInset;
}

}  // namespace lunoval
