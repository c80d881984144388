#include <gtest/gtest.h>

#include "eclipse/catalogue_fixture.hpp"
#include "eclipse/catalogue_text.hpp"
#include "eclipse/eclipse_parser.hpp"
#include "platform/date_formatter.hpp"
#include "platform/files.hpp"

namespace lunoval {
namespace {

using Reason = EclipseParser::ParsingError::Reason;

const std::string kGood = "04/08/2024 18:17,TSE";

std::vector<std::string> keys(const EclipseTable& table) {
    std::vector<std::string> result;
    for (const auto& [date, event] : table) result.push_back(event->key);
    return result;
}

struct WarningCase {
    const char* name;
    std::string text;
    std::string log;
    std::vector<std::string> keys;
};

TEST_F(Catalogue, WarnsOfEveryLineItSkips) {
    const std::vector<WarningCase> cases{
        {"spaces around the key", "03/14/2025 06:59, TLE \n", "", {"TLE"}},
        {"three fields",
         "03/14/2025 06:59,TLE,PLE\n" + kGood,
         "Warning: Invalid entry at line 1: 03/14/2025 06:59,TLE,PLE\n",
         {"TSE"}},
        {"no comma, quoted trimmed",
         " \tno comma here \n" + kGood,
         "Warning: Invalid entry at line 1: no comma here\n",
         {"TSE"}},
        {"empty key before anything else",
         "13/99/2025 ,\n,\n" + kGood,
         "Warning: Empty event key at line 1\nWarning: Empty event key at line 2\n",
         {"TSE"}},
        {"keys are case-sensitive and checked before the date",
         "junk,tle\n,XSE\n" + kGood,
         "Warning: Unknown event key 'tle' at line 1\n"
         "Warning: Unknown event key 'XSE' at line 2\n",
         {"TSE"}},
        {"empty date", " ,TLE\n" + kGood, "Warning: Empty date string at line 1\n", {"TSE"}},
        {"dates read strictly",
         "13/14/2025 06:59,TLE\n03/14/2025,TLE\n2025-03-14 06:59,TLE\n" + kGood,
         "Warning: Could not parse date '13/14/2025 06:59' at line 1\n"
         "Warning: Could not parse date '03/14/2025' at line 2\n"
         "Warning: Could not parse date '2025-03-14 06:59' at line 3\n",
         {"TSE"}},
        {"years 1900 to 2100 only, date unquoted",
         "12/31/1899 23:59,TLE\n01/01/2101 00:00,TSE\n12/31/2100 23:59,PSE\n01/01/1900 00:00,NLE",
         "Warning: Date 12/31/1899 23:59 is outside valid range (1900-2100)\n"
         "Warning: Date 01/01/2101 00:00 is outside valid range (1900-2100)\n",
         {"NLE", "PSE"}},
        {"the first of two at one instant wins",
         "03/14/2025 06:59,TLE\n03/14/2025 06:59 ,PSE",
         "Warning: Duplicate date entry at line 2: 03/14/2025 06:59\n",
         {"TLE"}},
        {"blank and comment lines are counted",
         "\n# catalogue\n\n \t\n\t# aside\njunk\n" + kGood,
         "Warning: Invalid entry at line 6: junk\n",
         {"TSE"}},
        {"CR LF is two separators",
         "# c\r\njunk\r\n" + kGood,
         "Warning: Invalid entry at line 3: junk\n",
         {"TSE"}},
        {"every newline character separates",
         "a\vb\fc\xC2\x85"
         "d\u2028e\u2029" +
             kGood,
         "Warning: Invalid entry at line 1: a\nWarning: Invalid entry at line 2: b\n"
         "Warning: Invalid entry at line 3: c\nWarning: Invalid entry at line 4: d\n"
         "Warning: Invalid entry at line 5: e\n",
         {"TSE"}},
        {"Unicode spaces are trimmed", "\u00A003/14/2025 06:59\u3000,\tTLE\u2003", "", {"TLE"}},
    };
    for (const auto& test : cases) {
        write(test.text);
        auto catalogue = parser();
        std::shared_ptr<const EclipseTable> table;
        EXPECT_EQ(loggedBy([&] { table = catalogue.parse(TimeZone::utc()); }), test.log)
            << test.name;
        ASSERT_TRUE(table) << test.name;
        EXPECT_EQ(keys(*table), test.keys) << test.name;
    }
}

// Dates written out in full skip the formatter; they must read exactly as it reads them, and
// anything it might read otherwise must be left to it.
TEST(CatalogueDates, WrittenOutInFullReadAsTheFormatterReadsThem) {
    const UTCDateParser formatter("MM/dd/yyyy HH:mm");
    const auto shipped = readWholeFile(std::filesystem::path(LUNOVAL_SOURCE_RESOURCES) /
                                       "com.orvane.Orvane" / "Data" / "events.txt");
    ASSERT_TRUE(shipped);
    std::vector<std::string> texts = {"02/29/2024 23:59", "12/31/1600 00:00", "01/01/9999 12:30"};
    for (const auto line : splitLines(*shipped)) {
        if (!line.empty() && line[0] != '#') texts.emplace_back(line.substr(0, 16));
    }
    ASSERT_GT(texts.size(), 900U);
    for (const auto& text : texts) {
        const auto direct = fullyWrittenDate(text);
        ASSERT_TRUE(direct) << text;
        EXPECT_EQ(direct, formatter.parse(text)) << text;
    }
    for (const char* other :
         {"4/08/2024 18:17", "04/08/24 18:17", "02/29/2023 10:00", "00/10/2024 10:00",
          "04/31/2024 10:00", "04/08/2024 24:00", "04/08/2024 18:60", "10/10/1582 12:00",
          "+4/08/2024 18:17", "04/08/2024 18:17 ", "04-08-2024 18:17", "04/08/2024T18:17"}) {
        EXPECT_FALSE(fullyWrittenDate(other)) << other;
    }
}

TEST_F(Catalogue, KnowsTheSevenKeys) {
    const std::vector<std::tuple<std::string, std::string, bool>> vocabulary{
        {"TLE", "Total Lunar Eclipse", true},    {"PLE", "Partial Lunar Eclipse", true},
        {"NLE", "Penumbra Lunar Eclipse", true}, {"TSE", "Total Solar Eclipse", false},
        {"PSE", "Partial Solar Eclipse", false}, {"ASE", "Annular Solar Eclipse", false},
        {"HSE", "Hybrid Solar Eclipse", false},
    };
    write(
        "05/01/2030 12:00,TLE\n05/02/2030 12:00,PLE\n05/03/2030 12:00,NLE\n"
        "05/04/2030 12:00,TSE\n05/05/2030 12:00,PSE\n05/06/2030 12:00,ASE\n"
        "05/07/2030 12:00,HSE\n");
    const auto table = parser().parse(TimeZone::utc());
    ASSERT_EQ(table->size(), vocabulary.size());
    EXPECT_EQ(table->begin()->first, utc(2030, 5, 1, 12));
    auto event = table->begin();
    for (const auto& [key, title, lunar] : vocabulary) {
        const auto& [date, found] = *event++;
        EXPECT_EQ(found->datetime, date);
        EXPECT_EQ(std::make_tuple(found->key, found->title, found->isLunarEvent, found->isVisible),
                  std::make_tuple(key, title, lunar, true));
    }
}

TEST(CatalogueYears, AreCountedInTheGivenZone) {
    const std::string text = "01/01/1900 02:00,TLE\n12/31/2100 23:59,TSE\n";
    const std::vector<std::tuple<const char*, std::vector<std::string>, std::string>> cases{
        {"UTC", {"TLE", "TSE"}, ""},
        {"America/New_York",
         {"TSE"},
         "Warning: Date 01/01/1900 02:00 is outside valid range (1900-2100)\n"},
        {"Asia/Tokyo",
         {"TLE"},
         "Warning: Date 12/31/2100 23:59 is outside valid range (1900-2100)\n"},
    };
    for (const auto& [identifier, expected, warning] : cases) {
        std::vector<std::string> found;
        const auto read = [&, identifier = identifier] {
            found = keys(parseCatalogue(text, zone(identifier)));
        };
        EXPECT_EQ(loggedBy(read), warning);
        EXPECT_EQ(found, expected) << identifier;
    }
}

TEST_F(Catalogue, CountsYearsInTheDeviceZone) {
    write("01/01/1900 02:00,TLE\n" + kGood);
    const auto log = loggedBy([&] {
        EXPECT_EQ(keys(*parser().parse(zone("America/Los_Angeles"))),
                  std::vector<std::string>{"TSE"});
    });
    EXPECT_EQ(log, "Warning: Date 01/01/1900 02:00 is outside valid range (1900-2100)\n");
}

struct FailureCase {
    const char* name;
    std::optional<std::string> text;  // absent: no file
    Reason reason;
    std::string log;  // of a load
};

TEST_F(Catalogue, FailsOnlyWithoutAUsableLine) {
    const std::vector<FailureCase> cases{
        {"no file", std::nullopt, Reason::fileNotFound, "Error loading events: fileNotFound\n"},
        {"not UTF-8", kGood + "\n\xFF\xFE\n", Reason::fileReadError,
         "Error loading events: fileReadError\n"},
        {"only white space", " \r\n\t\u3000\u2028\n", Reason::emptyFile,
         "Error loading events: emptyFile\n"},
        {"only comments", "# none yet\n\n", Reason::emptyFile, "Error loading events: emptyFile\n"},
        {"every line rejected", "x\n01/01/2101 00:00,TSE", Reason::emptyFile,
         "Warning: Invalid entry at line 1: x\n"
         "Warning: Date 01/01/2101 00:00 is outside valid range (1900-2100)\n"
         "Error loading events: emptyFile\n"},
    };
    for (const auto& test : cases) {
        std::filesystem::remove_all(root_);
        std::filesystem::create_directories(root_ / kFrameworkBundleIdentifier);
        if (test.text) write(*test.text);
        auto catalogue = parser();
        loggedBy([&] {
            try {
                catalogue.parse(TimeZone::utc());
                ADD_FAILURE() << test.name << ": nothing thrown";
            } catch (const EclipseParser::ParsingError& error) {
                EXPECT_EQ(error.reason(), test.reason) << test.name;
            }
        });
        EXPECT_EQ(loggedBy([&] { EXPECT_FALSE(catalogue.loadEvents(TimeZone::utc())); }), test.log)
            << test.name;
        const auto lookup = [&] {
            EXPECT_FALSE(catalogue.eclipseInfo(utc(2024, 4, 8), TimeZone::utc(), Solar::Observer{},
                                               TimeZone::utc()));
        };
        EXPECT_EQ(loggedBy(lookup), test.log) << test.name;
    }
}

TEST_F(Catalogue, ReadsAgainAfterAFailureButOnceAfterASuccess) {
    auto catalogue = parser();
    loggedBy([&] { EXPECT_FALSE(catalogue.loadEvents(TimeZone::utc())); });
    write(kGood);
    const auto table = catalogue.parse(TimeZone::utc());
    std::filesystem::remove_all(root_);
    EXPECT_EQ(catalogue.parse(TimeZone::utc()), table);
    EXPECT_EQ(catalogue.loadEvents(TimeZone::utc()), table);
}

TEST_F(Catalogue, SearchesTheFrameworkFirstThenTheHostApp) {
    write("03/14/2025 06:59,TLE", kHostAppBundleIdentifier);
    std::filesystem::create_directories(root_ / kFrameworkBundleIdentifier);
    EXPECT_EQ(keys(*parser().parse(TimeZone::utc())), std::vector<std::string>{"TLE"});
    write(kGood);
    EXPECT_EQ(keys(*parser().parse(TimeZone::utc())), std::vector<std::string>{"TSE"});
}

}  // namespace
}  // namespace lunoval
