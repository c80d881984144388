#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

#include "eclipsegen/eclipse_catalogue.hpp"
#include "eclipsegen/eclipse_geometry.hpp"
#include "eclipsegen/eclipse_kind.hpp"
#include "platform/files.hpp"
#include "temp_folder.hpp"

namespace lunoval {
namespace {

using eclipsegen::EclipseKind;
using eclipsegen::firstCatalogueYear;
using eclipsegen::lastCatalogueYear;
using eclipsegen::Syzygy;

// The catalogue's dates and types are compared with an independent ephemeris elsewhere; here
// the checked-in file must be the generator's output, whose geometry follows Meeus.
TEST(GeneratedEclipseCatalogue, CheckedInFileIsWhatTheGeneratorWrites) {
    const std::filesystem::path checkedIn = LUNOVAL_ECLIPSE_CATALOGUE;
    EXPECT_TRUE(readWholeFile(checkedIn) ==
                eclipsegen::catalogueText(firstCatalogueYear, lastCatalogueYear))
        << checkedIn << " differs from the generator's output";
}

struct WorkedExample {
    std::int64_t lunation;
    Syzygy syzygy;
    EclipseKind kind;
    double (*magnitude)(double gamma, double u);
    double expectedMagnitude;
    double julianEphemerisDay;
};

// Meeus, Astronomical Algorithms (2nd ed.), examples 54.a and c: the partial solar eclipse of
// 1993 May 21 and the penumbral lunar eclipse of 1973 June 15. He prints four decimals of the
// instants, gamma and u, which his rounded intermediate values can move by one unit.
const auto workedExamples = std::to_array<WorkedExample>({
    {-82, Syzygy::newMoon, EclipseKind::partialSolar, eclipsegen::partialSolarMagnitude, 0.740,
     2449129.0979},
    {-329, Syzygy::fullMoon, EclipseKind::penumbralLunar, eclipsegen::penumbralMagnitude, 0.462,
     2441849.3687},
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
        EXPECT_NEAR(geometry->julianEphemerisDay, example.julianEphemerisDay, 0.0001);
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
