#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "eclipsegen/eclipse_catalogue.hpp"
#include "eclipsegen/eclipse_geometry.hpp"
#include "eclipsegen/eclipse_kind.hpp"
#include "platform/files.hpp"
#include "temp_folder.hpp"

namespace lunoval {
namespace {

using namespace std::chrono_literals;
using date::literals::operator""_y;
using eclipsegen::CatalogueEclipse;
using eclipsegen::EclipseKind;
using eclipsegen::firstCatalogueYear;
using eclipsegen::lastCatalogueYear;
using eclipsegen::Syzygy;
using Instant = date::sys_time<std::chrono::seconds>;

const std::filesystem::path checkedInCatalogue = LUNOVAL_ECLIPSE_CATALOGUE;

const std::vector<CatalogueEclipse>& catalogue() {
    static const std::vector<CatalogueEclipse> eclipses =
        eclipsegen::eclipsesBetween(firstCatalogueYear, lastCatalogueYear);
    return eclipses;
}

Instant instantOf(const CatalogueEclipse& eclipse) {
    return date::sys_days(eclipse.time.date) + eclipse.time.hour + eclipse.time.minute;
}

std::string keyOf(const CatalogueEclipse& eclipse) {
    return std::string(eclipsegen::catalogueKey(eclipse.kind));
}

std::optional<CatalogueEclipse> catalogued(Instant near) {
    const auto found = std::ranges::find_if(catalogue(), [near](const CatalogueEclipse& eclipse) {
        return date::abs(instantOf(eclipse) - near) < date::days(1);
    });
    if (found == catalogue().end()) return std::nullopt;
    return *found;
}

TEST(GeneratedEclipseCatalogue, CheckedInFileIsWhatTheGeneratorWrites) {
    EXPECT_TRUE(readWholeFile(checkedInCatalogue) ==
                eclipsegen::catalogueText(firstCatalogueYear, lastCatalogueYear))
        << checkedInCatalogue << " differs from the generator's output";
}

TEST(GeneratedEclipseCatalogue, FileHoldsDatedKeysInChronologicalOrderAfterItsComments) {
    static const std::regex lineFormat(
        "(\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d),(TSE|ASE|HSE|PSE|TLE|PLE|NLE)");
    std::istringstream lines(readWholeFile(checkedInCatalogue).value_or(""));
    std::string line;
    while (std::getline(lines, line) && line.starts_with('#')) {
    }
    std::optional<Instant> first;
    std::optional<Instant> previous;
    for (; lines; std::getline(lines, line)) {
        std::smatch fields;
        ASSERT_TRUE(std::regex_match(line, fields, lineFormat)) << line;
        std::istringstream text(fields[1]);
        date::sys_time<std::chrono::minutes> instant;
        text >> date::parse("%m/%d/%Y %H:%M", instant);
        ASSERT_FALSE(text.fail()) << line;
        if (previous) {
            EXPECT_GT(Instant(instant), *previous) << line;
        }
        if (!first) first = instant;
        previous = instant;
    }
    ASSERT_TRUE(first && previous);
    EXPECT_GE(*first, date::sys_days(1900_y / 1 / 1));
    EXPECT_LT(*previous, date::sys_days(2101_y / 1 / 1));
}

struct PublishedEclipse {
    Instant greatest;  // UT
    const char* key;
};

Instant utc(date::year_month_day day, std::chrono::seconds time) {
    return date::sys_days(day) + time;
}

// Greatest eclipse in UT from Espenak's catalogues (NASA/GSFC): both ends of the range, every
// type and two non-central eclipses. The 2100 eclipse is given there as 08:49:20 TD; their ΔT
// polynomial puts UT 204 s earlier.
const auto publishedEclipses = std::to_array<PublishedEclipse>({
    {utc(1900_y / 5 / 28, 14h + 53min + 56s), "TSE"},
    {utc(2000_y / 1 / 21, 4h + 43min + 34s), "TLE"},
    {utc(2005_y / 4 / 8, 20h + 35min + 48s), "HSE"},
    {utc(2014_y / 4 / 29, 6h + 3min + 25s), "ASE"},  // non-central
    {utc(2022_y / 10 / 25, 11h + 0min + 9s), "PSE"},
    {utc(2023_y / 10 / 28, 20h + 14min + 5s), "PLE"},
    {utc(2024_y / 3 / 25, 7h + 12min + 51s), "NLE"},
    {utc(2043_y / 4 / 9, 18h + 56min + 22s), "TSE"},  // non-central
    {utc(2100_y / 9 / 4, 8h + 45min + 56s), "TSE"},
});

TEST(GeneratedEclipseCatalogue, HoldsPublishedEclipsesWithTheirTypeWithinTwoMinutes) {
    for (const PublishedEclipse& published : publishedEclipses) {
        const std::optional<CatalogueEclipse> eclipse = catalogued(published.greatest);
        ASSERT_TRUE(eclipse) << date::format("%F", published.greatest);
        EXPECT_EQ(keyOf(*eclipse), published.key) << date::format("%F", published.greatest);
        EXPECT_LE(date::abs(instantOf(*eclipse) - published.greatest), 2min)
            << date::format("%F %T", published.greatest);
    }
}

// Eclipses that lie on a threshold of Meeus' method, which falls on the other side of it than
// Espenak's catalogue: the catalogue's type, and this one's ("" when the method finds none).
struct ThresholdEclipse {
    date::year_month_day day;
    const char* publishedKey;
    const char* cataloguedKey;
};

const auto thresholdEclipses = std::to_array<ThresholdEclipse>({
    {1935_y / 1 / 5, "PSE", ""},     // the penumbra grazes a pole: magnitude about 0.001
    {1948_y / 5 / 9, "ASE", "HSE"},  // the antumbra's tip ends within a kilometre of the ground
    {2015_y / 4 / 4, "TLE", "PLE"},  // the moon barely fits in the umbra: magnitude 1.001
    {2027_y / 7 / 18, "NLE", ""},    // the moon grazes the penumbra: magnitude about 0.001
    {2096_y / 6 / 6, "NLE", ""},     // the moon grazes the penumbra: magnitude about 0.005
});

TEST(GeneratedEclipseCatalogue, ThresholdEclipsesAreListedAsNoted) {
    for (const ThresholdEclipse& eclipse : thresholdEclipses) {
        const std::optional<CatalogueEclipse> found = catalogued(date::sys_days(eclipse.day) + 12h);
        EXPECT_EQ(found ? keyOf(*found) : "", eclipse.cataloguedKey) << eclipse.day;
    }
}

struct PublishedCount {
    const char* key;
    long in1901To2000;
    long in2001To2100;
};

// Espenak's counts for the 20th and 21st centuries.
constexpr auto publishedCounts = std::to_array<PublishedCount>({
    {"PSE", 78, 77},
    {"ASE", 73, 72},
    {"TSE", 71, 68},
    {"HSE", 6, 7},
    {"NLE", 83, 86},
    {"PLE", 65, 57},
    {"TLE", 81, 85},
});

bool inCenturyFrom(int first, date::year_month_day day) {
    return day.year() >= date::year(first) && day.year() < date::year(first + 100);
}

TEST(GeneratedEclipseCatalogue, CountsPerCenturyAreThePublishedOnes) {
    for (const PublishedCount& published : publishedCounts) {
        for (const auto& [first, count] :
             {std::pair{1901, published.in1901To2000}, {2001, published.in2001To2100}}) {
            // The published count moved by the threshold eclipses of those years.
            long expected = count;
            for (const ThresholdEclipse& eclipse : thresholdEclipses) {
                if (!inCenturyFrom(first, eclipse.day)) continue;
                expected -= std::string(eclipse.publishedKey) == published.key;
                expected += std::string(eclipse.cataloguedKey) == published.key;
            }
            const auto found = std::ranges::count_if(catalogue(), [&](const CatalogueEclipse& e) {
                return inCenturyFrom(first, e.time.date) && keyOf(e) == published.key;
            });
            EXPECT_EQ(found, expected) << published.key << " from " << first;
        }
    }
}

struct WorkedExample {
    std::int64_t lunation;
    Syzygy syzygy;
    EclipseKind kind;
    double (*magnitude)(double gamma, double u);
    double expectedMagnitude;
    double julianEphemerisDay;  // 0 where not checked
};

// Meeus, Astronomical Algorithms (2nd ed.), examples 54.a, c and d: the partial solar eclipse
// of 1993 May 21, the penumbral lunar eclipse of 1973 June 15 and the total lunar eclipse of
// 1997 September 16. He prints four decimals of the instants, gamma and u, which his rounded
// intermediate values can move by one unit.
const auto workedExamples = std::to_array<WorkedExample>({
    {-82, Syzygy::newMoon, EclipseKind::partialSolar, eclipsegen::partialSolarMagnitude, 0.740,
     2449129.0979},
    {-329, Syzygy::fullMoon, EclipseKind::penumbralLunar, eclipsegen::penumbralMagnitude, 0.462,
     2441849.3687},
    {-29, Syzygy::fullMoon, EclipseKind::totalLunar, eclipsegen::umbralMagnitude, 1.187, 0},
});

std::optional<EclipseKind> kindOf(const eclipsegen::EclipseGeometry& geometry, Syzygy syzygy) {
    return syzygy == Syzygy::newMoon ? eclipsegen::solarEclipseKind(geometry.gamma, geometry.u)
                                     : eclipsegen::lunarEclipseKind(geometry.gamma, geometry.u);
}

TEST(EclipseGeometry, ReproducesMeeusWorkedExamples) {
    for (const WorkedExample& example : workedExamples) {
        const auto geometry = eclipsegen::eclipseGeometry(example.lunation, example.syzygy);
        ASSERT_TRUE(geometry) << example.lunation;
        EXPECT_EQ(kindOf(*geometry, example.syzygy), example.kind) << example.lunation;
        EXPECT_NEAR(example.magnitude(geometry->gamma, geometry->u), example.expectedMagnitude,
                    0.0005)
            << example.lunation;
        if (example.julianEphemerisDay != 0) {
            EXPECT_NEAR(geometry->julianEphemerisDay, example.julianEphemerisDay, 0.0001);
        }
    }
    const auto solar = eclipsegen::eclipseGeometry(-82, Syzygy::newMoon);
    EXPECT_NEAR(solar->gamma, 1.1348, 0.0001);
    EXPECT_NEAR(solar->u, 0.0097, 0.0001);
}

TEST(WriteCatalogue, FailsNamingTheFileAndLeavesNothingBehind) {
    const testing::TempFolder folder("lunoval-catalogue");
    std::filesystem::create_directories(folder.path() / "events.txt");
    try {
        eclipsegen::writeCatalogue(folder.path() / "events.txt", 2000, 2000);
        ADD_FAILURE() << "writing over a folder succeeded";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("events.txt"));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
}  // namespace lunoval
