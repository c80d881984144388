#include "eclipse/eclipse_event.hpp"

#include <gtest/gtest.h>
#include <unordered_set>

#include "eclipse/catalogue_fixture.hpp"

namespace lunoval {
namespace {

TEST(EclipseEvent, IsOneKeyAtOneInstant) {
    const EclipseEvent total{"TSE", "Total Solar Eclipse", utc(2024, 4, 8, 18, 17), false, true};
    const std::vector<std::pair<EclipseEvent, bool>> cases{
        {{"TSE", "Totale Sonnenfinsternis", utc(2024, 4, 8, 18, 17), true, false}, true},
        {{"PSE", "Total Solar Eclipse", utc(2024, 4, 8, 18, 17), false, true}, false},
        {{"TSE", "Total Solar Eclipse", utc(2024, 4, 8, 18, 18), false, true}, false},
    };
    const std::hash<EclipseEvent> hash;
    for (const auto& [other, equal] : cases) {
        EXPECT_EQ(total == other, equal) << other.key << " " << other.title;
        EXPECT_TRUE(!equal || hash(total) == hash(other));
    }
    const std::unordered_set<EclipseEvent> distinct{cases[0].first, cases[1].first, cases[2].first,
                                                    total};
    EXPECT_EQ(distinct.size(), 3U);
}

TEST(EclipseEvent, IsDescribedInUniversalTime) {
    const EclipseEvent total{
        .key = "TSE", .title = "Total Solar Eclipse", .datetime = utc(2024, 4, 8, 18, 17)};
    const std::vector<std::pair<const char*, const char*>> cases{
        {"en_US", "Total Solar Eclipse on Apr 8, 2024, 6:17\u202FPM (UTC)"},
        {"de_DE", "Total Solar Eclipse on 08.04.2024, 18:17 (UTC)"},
    };
    for (const auto& [locale, text] : cases) EXPECT_EQ(description(total, locale), text);
}

TEST(EclipseEvent, TitlesKnowOnlyTheCatalogueKeys) {
    EXPECT_EQ(eclipseTitle("NLE"), "Penumbra Lunar Eclipse");
    for (const char* unknown : {"", "tle", "TLE ", "LE", "XSE"}) {
        EXPECT_FALSE(eclipseTitle(unknown)) << unknown;
    }
}

}  // namespace
}  // namespace lunoval
