#include <benchmark/benchmark.h>

#include "timeline/widget_data_builder.hpp"

namespace {

// One warm fill for Paris: tables and zone database already loaded.
void fillMidLatitudePlace(benchmark::State& state) {
    const auto start = lunoval::Date::fromTimeIntervalSince1970(1760000000);
    lunoval::MoonWidgetData record{
        .latitude = 48.8566, .longitude = 2.3522, .timezone = "Europe/Paris"};
    lunoval::fill(record, start, true, start);
    double offset = 0;
    for (auto _ : state) {
        const auto date = start.addingTimeInterval(offset);
        lunoval::fill(record, date, true, date);
        benchmark::DoNotOptimize(record);
        offset = offset < 86400 * 20 ? offset + 3607 : 0;
    }
}
BENCHMARK(fillMidLatitudePlace)->Repetitions(9)->ReportAggregatesOnly(true);

}  // namespace
