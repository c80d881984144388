#include "timeline/moon_widget_data.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "timeline/widget_data_builder.hpp"

namespace lunoval {
namespace {

const Date kNow = Date::fromTimeIntervalSince1970(1760000000.25);

TEST(WidgetDataCodec, DecodesTheFourKeysAndDefaultsTheRest) {
    const auto record = decodeWidgetData(
        R"({"latitude": 48.85, "longitude": 2, "timezone": "Europe/Paris", "locationName": "Paris",
            "isPlaceholder": true, "sunrise": 5, "extra": [1, 2]})",
        kNow);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->latitude, 48.85);
    EXPECT_EQ(record->longitude, 2.0);
    EXPECT_EQ(record->timezone, "Europe/Paris");
    EXPECT_EQ(record->locationName, "Paris");
    EXPECT_FALSE(record->isPlaceholder);
    EXPECT_FALSE(record->needsLocationPermission);
    EXPECT_EQ(record->selectedTime, kNow);
    EXPECT_FALSE(record->sunrise);
}

TEST(WidgetDataCodec, RejectsDocumentsWithoutTheRequiredKeys) {
    const std::vector<std::pair<const char*, bool>> documents{
        {R"({"latitude": 1, "longitude": 2, "timezone": "UTC"})", true},
        {R"({"latitude": 1, "longitude": 2, "timezone": "UTC", "locationName": null})", true},
        {R"({"latitude": 1, "longitude": 2})", false},
        {R"({"latitude": "1", "longitude": 2, "timezone": "UTC"})", false},
        {R"({"latitude": 1, "longitude": 2, "timezone": 3})", false},
        {R"({"latitude": 1, "longitude": 2, "timezone": "UTC", "locationName": 4})", false},
        {R"([1, 2, "UTC"])", false},
        {"{", false},
        {"", false},
    };
    for (const auto& [text, decodes] : documents) {
        EXPECT_EQ(decodeWidgetData(text, kNow).has_value(), decodes) << text;
    }
    EXPECT_FALSE(decodeWidgetData(R"({"latitude": 1, "longitude": 2, "timezone": "UTC"})", kNow)
                     ->locationName);
}

TEST(WidgetDataCodec, WritesOnlyThePlaceAndLosesTheRestOnTheWayBack) {
    const auto full = MoonWidgetData::placeholder(kNow);
    const auto document = nlohmann::json::parse(encodeWidgetData(full));
    EXPECT_EQ(document.size(), 4U);
    EXPECT_EQ(document.at("locationName"), "San Francisco");

    const auto decoded = decodeWidgetData(encodeWidgetData(full), Date{});
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->latitude, full.latitude);
    EXPECT_EQ(decoded->timezone, full.timezone);
    EXPECT_FALSE(decoded->isPlaceholder);
    EXPECT_FALSE(decoded->currentMoonPhase || decoded->moonrise || decoded->nextPhaseTime);

    MoonWidgetData unnamed{.latitude = 1, .longitude = 2, .timezone = "UTC"};
    EXPECT_FALSE(nlohmann::json::parse(encodeWidgetData(unnamed)).contains("locationName"));
}

TEST(RecordJson, HasEveryFieldWithNullForAbsentOnes) {
    const auto document = recordJson(MoonWidgetData::permissionNeeded("Europe/Oslo", kNow));
    EXPECT_EQ(document.size(), 17U);
    EXPECT_EQ(document.at("needsLocationPermission"), true);
    EXPECT_EQ(document.at("timezone"), "Europe/Oslo");
    EXPECT_EQ(document.at("selectedTime").get<double>(), 1760000000.25);
    for (const char* key : {"locationName", "sunrise", "moonAzimuth", "currentMoonPhase",
                            "nextPhaseTime", "eclipseInfo"}) {
        EXPECT_TRUE(document.at(key).is_null()) << key;
    }
    // The views' tests pin the placeholder's sample times and phases as they show them.
    const auto placeholder = recordJson(MoonWidgetData::placeholder(kNow));
    EXPECT_EQ(placeholder.at("isPlaceholder"), true);
    EXPECT_EQ(placeholder.at("selectedTime").get<double>(), 1760000000.25);
    EXPECT_TRUE(placeholder.at("eclipseInfo").is_null());
    EXPECT_EQ(placeholder.at("currentMoonPhase").at("phaseType"), "waxingGibbous");
    EXPECT_EQ(placeholder.at("currentMoonPhase").at("phaseName"), "Waxing Gibbous");
    EXPECT_EQ(placeholder.at("moonrise").get<double>(), 1760074200.0);
}

}  // namespace
}  // namespace lunoval
