#include <gtest/gtest.h>

#include <date/date.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unordered_set>
#include "astro/test_dates.hpp"
#include "temp_folder.hpp"

#include "eclipse/catalogue_text.hpp"
#include "eclipse/eclipse_event.hpp"
#include "eclipse/eclipse_parser.hpp"

namespace lunoval {
namespace {

using testing::utc;
using testing::zone;

const std::string kGood = "04/08/2024 18:17,TSE";
const TimeZone kUtc = TimeZone::utc();

template <typename F>
std::string loggedBy(F action) {
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

std::vector<std::string> keys(const EclipseTable& table) {
    std::vector<std::string> result;
    for (const auto& [date, event] : table) result.push_back(event->key);
    return result;
}

TEST(CatalogueText, WarnsOfEveryLineItSkips) {
    struct Case {
        const char* name;
        std::string text;
        std::string log;
        std::vector<std::string> keys;
        const char* yearZone = "UTC";
    };
    const std::vector<Case> cases{
        {"malformed lines, the key checked before the date; the first of two at one instant wins",
         "03/14/2025 06:59,TLE,PLE\n \tno comma here \n13/99/2025 ,\njunk,tle\n,XSE\n ,TLE\n"
         "13/14/2025 06:59,TLE\n03/14/2025,TLE\n2025-03-14 06:59,TLE\n" +
             kGood + "\n04/08/2024 18:17 ,PSE\n\u00A003/14/2025 06:59\u3000, \tTLE\u2003",
         "Warning: Invalid entry at line 1: 03/14/2025 06:59,TLE,PLE\n"
         "Warning: Invalid entry at line 2: no comma here\n"
         "Warning: Empty event key at line 3\n"
         "Warning: Unknown event key 'tle' at line 4\n"
         "Warning: Unknown event key 'XSE' at line 5\n"
         "Warning: Empty date string at line 6\n"
         "Warning: Could not parse date '13/14/2025 06:59' at line 7\n"
         "Warning: Could not parse date '03/14/2025' at line 8\n"
         "Warning: Could not parse date '2025-03-14 06:59' at line 9\n"
         "Warning: Duplicate date entry at line 11: 04/08/2024 18:17\n",
         {"TSE", "TLE"}},
        {"years 1900 to 2100 only, an old date read by the general parser too",
         "12/31/1899 23:59,TLE\n01/01/2101 00:00,TSE\n12/31/2100 23:59,PSE\n01/01/1500 00:00,NLE",
         "Warning: Date 12/31/1899 23:59 is outside valid range (1900-2100)\n"
         "Warning: Date 01/01/2101 00:00 is outside valid range (1900-2100)\n"
         "Warning: Date 01/01/1500 00:00 is outside valid range (1900-2100)\n",
         {"PSE"}},
        {"years counted in the device's zone",
         "01/01/1900 00:00,TLE\n12/31/2100 23:59,TSE",
         "Warning: Date 12/31/2100 23:59 is outside valid range (1900-2100)\n",
         {"TLE"},
         "Asia/Tokyo"},
        {"blank and comment lines are counted, every newline character separates",
         "\n# catalogue\n \t\n\t# aside\r\njunk\va\fb\xC2\x85"
         "c\u2028d\u2029" +
             kGood,
         "Warning: Invalid entry at line 6: junk\nWarning: Invalid entry at line 7: a\n"
         "Warning: Invalid entry at line 8: b\nWarning: Invalid entry at line 9: c\n"
         "Warning: Invalid entry at line 10: d\n",
         {"TSE"}},
    };
    for (const auto& test : cases) {
        EclipseTable table;
        EXPECT_EQ(loggedBy([&] { table = parseCatalogue(test.text, zone(test.yearZone)); }),
                  test.log)
            << test.name;
        EXPECT_EQ(keys(table), test.keys) << test.name;
    }
}

// A fresh folder of bundles; each test writes the catalogues it needs.
class Catalogue : public ::testing::Test {
  protected:
    void write(const std::string& text, std::string_view bundle = kFrameworkBundleIdentifier) {
        const auto folder = root_ / bundle / "Data";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "events.txt", std::ios::binary) << text;
    }
    EclipseParser parser() const { return EclipseParser(BundleLocator{{root_}}); }

    lunoval::testing::TempFolder temp_{"lunoval-eclipse"};
    const std::filesystem::path& root_ = temp_.path();
};

// Every failed read is tried again; the first success is kept.
TEST_F(Catalogue, FailsOnlyWithoutAUsableLineAndReadsTheFrameworksFileFirst) {
    using Reason = EclipseParser::ParsingError::Reason;
    auto catalogue = parser();
    const auto failsWith = [&](Reason reason) {
        loggedBy([&] {
            try {
                catalogue.parse(kUtc);
                ADD_FAILURE() << "nothing thrown";
            } catch (const EclipseParser::ParsingError& error) {
                EXPECT_EQ(error.reason(), reason);
            }
            EXPECT_FALSE(catalogue.eclipseInfo(utc(2024, 4, 8), kUtc, std::nullopt, kUtc));
        });
    };
    failsWith(Reason::fileNotFound);
    const std::vector<std::pair<std::string, Reason>> unusable = {
        {kGood + "\n\xFF\xFE\n", Reason::fileReadError},
        {" \r\n\t\u3000\u2028\n", Reason::emptyFile},
        {"# none yet\n\n", Reason::emptyFile},
        {"x\n01/01/2101 00:00,TSE", Reason::emptyFile}};
    for (const auto& [text, reason] : unusable) {
        SCOPED_TRACE(text);
        write(text, kHostAppBundleIdentifier);
        failsWith(reason);
    }
    write("03/14/2025 06:59,TLE", kHostAppBundleIdentifier);
    const auto table = catalogue.parse(kUtc);
    EXPECT_EQ(keys(*table), std::vector<std::string>{"TLE"});
    write(kGood);
    EXPECT_EQ(keys(*parser().parse(kUtc)), std::vector<std::string>{"TSE"});
    std::filesystem::remove_all(root_);
    EXPECT_EQ(catalogue.loadEvents(kUtc), table);
}

// The earliest eclipse of the local day, seen by all without a place to hide it.
TEST_F(Catalogue, FindsWhatAScanOfTheWholeTableFindsAcrossSkippedDays) {
    // An event every 7 hours around the day Samoa skipped (30 December 2011).
    std::string lines;
    for (int hour = 0; hour < 10 * 24; hour += 7) {
        const auto instant = date::sys_days{date::year{2011} / 12 / 26} + std::chrono::hours{hour};
        lines += date::format("%m/%d/%Y %H:%M,TLE\n", instant);
    }
    write(lines);
    auto catalogue = parser();
    const auto table = catalogue.parse(kUtc);
    for (const char* name : {"Pacific/Apia", "Pacific/Kiritimati", "America/St_Johns", "UTC"}) {
        const Calendar calendar(zone(name));
        for (int hour = 0; hour < 14 * 24; hour += 5) {
            const auto entry = utc(2011, 12, 24).addingTimeInterval(hour * 3600.0);
            const auto scanned = std::find_if(table->begin(), table->end(), [&](const auto& e) {
                return calendar.isDateInSameDay(e.first, entry);
            });
            const auto found = catalogue.eclipseInfo(entry, zone(name), std::nullopt, kUtc);
            EXPECT_EQ(found, scanned == table->end() ? nullptr : scanned->second) << name << hour;
            EXPECT_TRUE(!found || found->isVisible);
        }
    }
}

// Title and visibility do not tell events apart; the description is in UTC.
TEST(EclipseEvent, IsOneKeyAtOneInstant) {
    const EclipseEvent total{"TSE", "Total Solar Eclipse", utc(2024, 4, 8, 18, 17)};
    const EclipseEvent retitled{"TSE", "Totale Sonnenfinsternis", total.datetime, false, false};
    EXPECT_EQ((std::unordered_set<EclipseEvent>{total, retitled}.size()), 1U);
    EXPECT_NE(total, (EclipseEvent{"PSE", total.title, total.datetime}));
    EXPECT_NE(total, (EclipseEvent{"TSE", total.title, utc(2024, 4, 8, 18, 18)}));
    EXPECT_EQ(description(total, "de_DE"), "Total Solar Eclipse on 08.04.2024, 18:17 (UTC)");
}

}  // namespace
}  // namespace lunoval
