#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include "temp_folder.hpp"

#include "locations/widget_location_cache.hpp"

namespace lunoval {
namespace {

using std::nullopt;

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);
constexpr double kParis = 48.8566;  // the cached fix's latitude, at longitude 2.3522

double ago(double seconds) {
    return kStart.timeIntervalSince1970() - seconds;
}

// A cache serves for less than a day and until the device is more than 50 km from it; a
// stamp that is missing or not a number is none, one from the future merely young. A fresh
// fix is asked for at most once an hour.
TEST(WidgetLocationCache, ServesForADayWithinFiftyKilometresAndRequestsWaitAnHour) {
    const lunoval::testing::TempFolder temp("lunoval-widget");
    const UserDefaults defaults(temp.path() / "group.plist");
    const double nan = std::nan("");
    // The stamps and latitude stored, degrees north of Paris the device now is; the latitude
    // answered, and whether a fresh fix may be asked for.
    using Case = std::tuple<PropertyValue, PropertyValue, PropertyValue, std::optional<double>,
                            std::optional<double>, bool>;
    for (const auto& [stamp, requested, latitude, north, answered, requests] : std::vector<Case>{
             {ago(86399), ago(3599), kParis, nullopt, kParis, false},
             {ago(86400), ago(3600), kParis, nullopt, nullopt, true},
             {ago(86400), nullptr, kParis, 0.47, kParis + 0.47, true},  // too old: the device's
             {ago(600), nullptr, kParis, 0.44, kParis, true},           // about 49 km away
             {ago(600), nullptr, kParis, 0.47, kParis + 0.47, true},    // about 52 km away
             {nullptr, nullptr, kParis, 0.44, kParis + 0.44, true},
             {nan, nan, kParis, nullopt, nullopt, true},
             {"yesterday", "soon", kParis, nullopt, nullopt, true},
             {HUGE_VAL, HUGE_VAL, kParis, nullopt, kParis, false},
             {ago(60), nullptr, nan, nullopt, nullopt, true},
             {ago(60), nullptr, 1e300, nullopt, nullopt, true}}) {  // off the globe
        SCOPED_TRACE(stamp.dump() + " " + requested.dump() + " " + latitude.dump());
        defaults.setObjects({{"WidgetLastLocationLat", latitude},  // a null value leaves it out
                             {"WidgetLastLocationLng", 2.3522},
                             {"WidgetLastLocationTimestamp", stamp},
                             {"WidgetLastLocationRequestTimestamp", requested}});
        std::optional<Location> device;
        if (north) device = Location{kParis + *north, 2.3522};
        const auto cached = widgetcache::cachedLocation(defaults, device, kStart);
        EXPECT_EQ(cached ? std::optional(cached->latitude) : nullopt, answered);
        // What is answered is what is cached from then on.
        if (answered) {
            EXPECT_EQ(defaults.doubleForKey("WidgetLastLocationLat"), answered);
        }
        EXPECT_EQ(widgetcache::shouldRequestLocation(defaults, kStart), requests);
    }
}

}  // namespace
}  // namespace lunoval
