#include <gtest/gtest.h>

#include "app/lunoval_widget_bundle.hpp"
#include "app/moon_widget_settings_intent.hpp"
#include "timeline/configuration_app_intent.hpp"

namespace lunoval {
namespace {

using enum widgetkit::WidgetFamily;

TEST(WidgetKinds, OnlyTheTimesAndPhaseWidgetsReachTheLockScreen) {
    std::vector<std::string_view> lockScreen;
    for (const auto& kind : LunovalWidgetBundle::body()) {
        if (kind.supports(accessoryCircular) || kind.supports(accessoryInline)) {
            lockScreen.push_back(kind.kind);
        }
    }
    EXPECT_EQ(LunovalWidgetBundle::body().size(), 4u);
    EXPECT_EQ(lockScreen, (std::vector<std::string_view>{"MoonTimesWidget", "MoonPhaseWidget"}));
}

TEST(WidgetKinds, EachOffersOnlyItsOwnSizes) {
    EXPECT_FALSE(LunovalWidgetBundle::widget("MoonPhaseWidget")->supports(systemMedium));
    EXPECT_TRUE(LunovalWidgetBundle::widget("MoonPhaseWidget")->supports(systemLarge));
    EXPECT_FALSE(LunovalWidgetBundle::widget("MoonTimesWidget")->supports(systemLarge));
    EXPECT_TRUE(LunovalWidgetBundle::widget("MoonTimesWidget")->supports(systemMedium));
    EXPECT_EQ(LunovalWidgetBundle::widget("MoonEventWidget")->displayName,
              std::string("Moon Times"));
    EXPECT_FALSE(LunovalWidgetBundle::widget("moonphasewidget").has_value());
}

TEST(SettingsIntent, RawValuesOutsideTheDeclaredCasesAreAbsent) {
    EXPECT_EQ(highlightColor(5), HighlightColor::orange);
    EXPECT_EQ(highlightColor(0), HighlightColor::unknown);
    EXPECT_FALSE(highlightColor(6).has_value());
    EXPECT_FALSE(highlightColor(-1).has_value());
    EXPECT_EQ(moonWidgetSettingsIntentResponseCode(6),
              MoonWidgetSettingsIntentResponseCode::failureRequiringAppLaunch);
    EXPECT_FALSE(moonWidgetSettingsIntentResponseCode(7).has_value());
    EXPECT_FALSE(MoonWidgetSettingsIntentResponse::decoded(7).has_value());
    EXPECT_EQ(MoonWidgetSettingsIntentResponse::decoded(4)->code,
              MoonWidgetSettingsIntentResponseCode::success);
}

TEST(SettingsIntent, ResolutionResultsCarryTheRawValue) {
    const auto confirm =
        HighlightColorResolutionResult::confirmationRequiredWithHighlightColorToConfirm(
            HighlightColor::blue);
    EXPECT_EQ(confirm.outcome, EnumResolutionResult::Outcome::confirmationRequired);
    EXPECT_EQ(confirm.value, 3);
    EXPECT_EQ(
        HighlightColorResolutionResult::successWithResolvedHighlightColor(HighlightColor::gold)
            .outcome,
        EnumResolutionResult::Outcome::success);
}

TEST(ConfigurationAppIntent, TitleFallsBackToItsKey) {
    EXPECT_EQ(ConfigurationAppIntent::title(), "Lunoval Widget");
}

}  // namespace
}  // namespace lunoval
