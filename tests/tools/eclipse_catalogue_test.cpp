#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
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

TEST(GeneratedEclipseCatalogue, FileIsACommentBlockThenDatedKeysInChronologicalOrder) {
    static const std::regex lineFormat(
        "(\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d),(TSE|ASE|HSE|PSE|TLE|PLE|NLE)");
    std::istringstream lines(readWholeFile(checkedInCatalogue).value_or(""));
    std::string line;
    std::getline(lines, line);
    EXPECT_THAT(line,
                ::testing::StartsWith("# Every solar and lunar eclipse from 1900 through 2100"));
    while (line.starts_with('#')) std::getline(lines, line);
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

// Greatest eclipse in UT from Espenak's catalogues (NASA/GSFC). The 2100 eclipse is given there
// as 08:49:20 TD; their ΔT polynomial puts UT 204 s earlier.
const auto publishedEclipses = std::to_array<PublishedEclipse>({
    {utc(1900_y / 5 / 28, 14h + 53min + 56s), "TSE"},
    {utc(1999_y / 8 / 11, 11h + 3min + 4s), "TSE"},
    {utc(2000_y / 1 / 21, 4h + 43min + 34s), "TLE"},
    {utc(2005_y / 4 / 8, 20h + 35min + 48s), "HSE"},
    {utc(2013_y / 11 / 3, 12h + 46min + 28s), "HSE"},
    {utc(2014_y / 4 / 29, 6h + 3min + 25s), "ASE"},  // non-central
    {utc(2017_y / 8 / 21, 18h + 25min + 32s), "TSE"},
    {utc(2018_y / 7 / 27, 20h + 21min + 44s), "TLE"},
    {utc(2021_y / 6 / 10, 10h + 41min + 54s), "ASE"},
    {utc(2022_y / 10 / 25, 11h + 0min + 9s), "PSE"},
    {utc(2022_y / 11 / 8, 10h + 59min + 11s), "TLE"},
    {utc(2023_y / 4 / 20, 4h + 16min + 49s), "HSE"},
    {utc(2023_y / 10 / 14, 17h + 59min + 30s), "ASE"},
    {utc(2023_y / 10 / 28, 20h + 14min + 5s), "PLE"},
    {utc(2024_y / 3 / 25, 7h + 12min + 51s), "NLE"},
    {utc(2024_y / 4 / 8, 18h + 17min + 16s), "TSE"},
    {utc(2025_y / 3 / 14, 6h + 58min + 43s), "TLE"},
    {utc(2025_y / 3 / 29, 10h + 47min + 25s), "PSE"},
    {utc(2025_y / 9 / 7, 18h + 11min + 48s), "TLE"},
    {utc(2029_y / 1 / 14, 17h + 12min + 35s), "PSE"},
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
    int firstYear;
    int lastYear;
    const char* key;
    int count;
};

// Espenak's counts for the 20th and 21st centuries.
constexpr auto publishedCounts = std::to_array<PublishedCount>({
    {1901, 2000, "PSE", 78},
    {1901, 2000, "ASE", 73},
    {1901, 2000, "TSE", 71},
    {1901, 2000, "HSE", 6},
    {1901, 2000, "NLE", 83},
    {1901, 2000, "PLE", 65},
    {1901, 2000, "TLE", 81},
    {2001, 2100, "PSE", 77},
    {2001, 2100, "ASE", 72},
    {2001, 2100, "TSE", 68},
    {2001, 2100, "HSE", 7},
    {2001, 2100, "NLE", 86},
    {2001, 2100, "PLE", 57},
    {2001, 2100, "TLE", 85},
});

bool inYears(date::year_month_day day, const PublishedCount& published) {
    return day.year() >= date::year(published.firstYear) &&
           day.year() <= date::year(published.lastYear);
}

// The published count moved by the threshold eclipses of those years.
long expectedCount(const PublishedCount& published) {
    long count = published.count;
    for (const ThresholdEclipse& eclipse : thresholdEclipses) {
        if (!inYears(eclipse.day, published)) continue;
        count -= std::string(eclipse.publishedKey) == published.key;
        count += std::string(eclipse.cataloguedKey) == published.key;
    }
    return count;
}

TEST(GeneratedEclipseCatalogue, CountsPerCenturyAreThePublishedOnes) {
    for (const PublishedCount& published : publishedCounts) {
        const auto count = std::ranges::count_if(catalogue(), [&](const CatalogueEclipse& e) {
            return inYears(e.time.date, published) && keyOf(e) == published.key;
        });
        EXPECT_EQ(count, expectedCount(published))
            << published.key << " " << published.firstYear << "-" << published.lastYear;
    }
}

// Every calendar year has from two to five solar eclipses, and as many lunar ones.
TEST(GeneratedEclipseCatalogue, EveryYearHasTwoToFiveOfEachFamily) {
    std::map<std::pair<int, bool>, int> counts;
    for (const CatalogueEclipse& eclipse : catalogue()) {
        const bool lunar = keyOf(eclipse).ends_with("LE");
        ++counts[{static_cast<int>(eclipse.time.date.year()), lunar}];
    }
    for (int year = firstCatalogueYear; year <= lastCatalogueYear; ++year) {
        for (const bool lunar : {false, true}) {
            const int count = counts[std::pair(year, lunar)];
            EXPECT_THAT(count, ::testing::AllOf(::testing::Ge(2), ::testing::Le(5)))
                << year << (lunar ? " lunar" : " solar");
        }
    }
}

struct WorkedExample {
    std::int64_t lunation;
    Syzygy syzygy;
    EclipseKind kind;
    double (*magnitude)(double gamma, double u);
    double expectedMagnitude;
};

// Meeus, Astronomical Algorithms (2nd ed.), examples 54.a, c and d: the partial solar eclipse
// of 1993 May 21, the penumbral lunar eclipse of 1973 June 15 and the total lunar eclipse of
// 1997 September 16.
const auto workedExamples = std::to_array<WorkedExample>({
    {-82, Syzygy::newMoon, EclipseKind::partialSolar, eclipsegen::partialSolarMagnitude, 0.740},
    {-329, Syzygy::fullMoon, EclipseKind::penumbralLunar, eclipsegen::penumbralMagnitude, 0.462},
    {-29, Syzygy::fullMoon, EclipseKind::totalLunar, eclipsegen::umbralMagnitude, 1.187},
});

std::optional<EclipseKind> kindOf(const eclipsegen::EclipseGeometry& geometry, Syzygy syzygy) {
    return syzygy == Syzygy::newMoon ? eclipsegen::solarEclipseKind(geometry.gamma, geometry.u)
                                     : eclipsegen::lunarEclipseKind(geometry.gamma, geometry.u);
}

TEST(EclipseGeometry, GivesTheKindAndMagnitudeOfMeeusWorkedExamples) {
    for (const WorkedExample& example : workedExamples) {
        const auto geometry = eclipsegen::eclipseGeometry(example.lunation, example.syzygy);
        ASSERT_TRUE(geometry) << example.lunation;
        EXPECT_EQ(kindOf(*geometry, example.syzygy), example.kind) << example.lunation;
        EXPECT_NEAR(example.magnitude(geometry->gamma, geometry->u), example.expectedMagnitude,
                    0.0005)
            << example.lunation;
    }
}

// Meeus prints four decimals of the results, which his rounded intermediate values can move
// by one unit.
TEST(EclipseGeometry, GivesTheInstantGammaAndUOfMeeusWorkedExamples) {
    const auto solar = eclipsegen::eclipseGeometry(-82, Syzygy::newMoon);
    ASSERT_TRUE(solar);
    EXPECT_NEAR(solar->julianEphemerisDay, 2449129.0979, 0.0001);
    EXPECT_NEAR(solar->gamma, 1.1348, 0.0001);
    EXPECT_NEAR(solar->u, 0.0097, 0.0001);
    const auto lunar = eclipsegen::eclipseGeometry(-329, Syzygy::fullMoon);
    ASSERT_TRUE(lunar);
    EXPECT_NEAR(lunar->julianEphemerisDay, 2441849.3687, 0.0001);
}

TEST(WriteCatalogue, FailsNamingTheFileAndLeavesNothingBehind) {
    const std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) / "eclipse_catalogue_unwritable";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "events.txt");
    try {
        eclipsegen::writeCatalogue(folder / "events.txt", 2000, 2000);
        ADD_FAILURE() << "writing over a folder succeeded";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("events.txt"));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                            std::filesystem::directory_iterator()),
              1);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace lunoval
