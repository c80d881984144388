#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "app/lunoval_widget_bundle.hpp"
#include "timeline/entry_details.hpp"
#include "timeline/widget_data_builder.hpp"

namespace lunoval::bench {

inline const Date kNow = Date::fromTimeIntervalSince1970(1760000000);

// A Paris device at kNow, as a request sees it.
inline RequestContext parisContext() {
    const auto paris = *TimeZone::named("Europe/Paris");
    return {.clock = fixedClock(kNow),
            .deviceZone = paris,
            .locale = "en_US",
            .sources = AstronomySources::shared(paris)};
}

// Paris filled at kNow, without the details a drawing host adds.
inline MoonWidgetEntry parisEntry(const RequestContext& context) {
    MoonWidgetData record{.latitude = 48.8566, .longitude = 2.3522, .timezone = "Europe/Paris"};
    fill(record, kNow, SunTimes::include, Solar::Tilt::at(kNow), context.sources);
    return {.date = kNow, .widgetData = record};
}

// The first widget of the bundle that offers the family.
inline WidgetKind widgetOffering(widgetkit::WidgetFamily family) {
    const auto widgets = LunovalWidgetBundle::body();
    return *std::find_if(widgets.begin(), widgets.end(),
                         [family](const auto& w) { return w.supports(family); });
}

// `run` once per family, named "<prefix>/<family>".
template <class Run>
bool registerPerFamily(const std::string& prefix, Run run) {
    using enum widgetkit::WidgetFamily;
    for (const auto family : {systemSmall, systemMedium, systemLarge, accessoryCircular,
                              accessoryRectangular, accessoryInline}) {
        const auto name = prefix + "/" + std::string(widgetkit::familyName(family));
        benchmark::RegisterBenchmark(name.c_str(), run, family)
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    }
    return true;
}

}  // namespace lunoval::bench
