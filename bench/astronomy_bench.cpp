#include <benchmark/benchmark.h>

#include "eclipse/eclipse_parser.hpp"
#include "phases/moon_phase_data_manager.hpp"
#include "timeline/widget_data_builder.hpp"

namespace {

using namespace lunoval;

const Date kStart = Date::fromTimeIntervalSince1970(1760000000);  // 2025-10-09
const TimeZone kParis = *TimeZone::named("Europe/Paris");
const AstronomySources kSources = AstronomySources::shared(kParis);

// Steps through three weeks an hour and a bit at a time, so no two calls ask the same.
class Instants {
  public:
    Date next() {
        offset_ = offset_ < 86400 * 20 ? offset_ + 3607 : 0;
        return kStart.addingTimeInterval(offset_);
    }

  private:
    double offset_ = 0;
};

// One warm fill for Paris: tables and zone database already loaded.
void fillMidLatitudePlace(benchmark::State& state) {
    MoonWidgetData record{.latitude = 48.8566, .longitude = 2.3522, .timezone = "Europe/Paris"};
    fill(record, kStart, SunTimes::include, Solar::Tilt::at(kStart), kSources);
    Instants instants;
    for (auto _ : state) {
        const auto date = instants.next();
        fill(record, date, SunTimes::include, Solar::Tilt::at(date), kSources);
        benchmark::DoNotOptimize(record);
    }
}
BENCHMARK(fillMidLatitudePlace)->Repetitions(9)->ReportAggregatesOnly(true);

void nextPhase(benchmark::State& state) {
    auto& tables = MoonPhaseDataManager::shared();
    tables.nextPhase(kStart, kParis);
    Instants instants;
    for (auto _ : state) benchmark::DoNotOptimize(tables.nextPhase(instants.next(), kParis));
}
BENCHMARK(nextPhase)->Repetitions(9)->ReportAggregatesOnly(true);

// On the day of the 2026 total solar eclipse, so the lookup also decides its visibility.
void eclipseInfo(benchmark::State& state) {
    auto& catalogue = EclipseParser::shared();
    const Date eclipseDay = Date::fromTimeIntervalSince1970(1786500000);
    catalogue.eclipseInfo(eclipseDay, kParis, Solar::Observer{48.8566, 2.3522}, kParis);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            catalogue.eclipseInfo(eclipseDay, kParis, Solar::Observer{48.8566, 2.3522}, kParis));
    }
}
BENCHMARK(eclipseInfo)->Repetitions(9)->ReportAggregatesOnly(true);

}  // namespace
