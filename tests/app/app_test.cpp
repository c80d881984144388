#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "app/lunoval_widget_bundle.hpp"
#include "app/moon_widget_settings_intent.hpp"
#include "app/widget_renderer.hpp"
#include "display_list_queries.hpp"
#include "drawn_entry.hpp"
#include "platform/localization.hpp"
#include "ui/pango_layout.hpp"
#include "ui/pango_text_measurer.hpp"

namespace lunoval {
namespace {

class Translations : public ::testing::TestWithParam<const char*> {
  protected:
    Translations() { l10n::useLanguage(GetParam()); }
    ~Translations() override { l10n::useLanguage("en_US"); }
};

TEST_P(Translations, EveryWidgetShowsTranslatedTextsThatFitWithEveryGlyph) {
    // Every key of the catalogues, from the template the build extracts, and its translation. A
    // key may also be another key's translation: "M" is Monday in English, Tuesday in French.
    std::set<std::string> keys;
    std::set<std::string> translations;
    std::ifstream pot(LUNOVAL_TRANSLATION_TEMPLATE);
    for (std::string line; std::getline(pot, line);) {
        if (!line.starts_with("msgid \"") || line.size() <= 8) continue;
        const auto& key = *keys.insert(line.substr(7, line.size() - 8)).first;
        translations.insert(l10n::localized(key.c_str()));
    }
    ASSERT_GT(keys.size(), 40U);
    EXPECT_NE(l10n::localized("Waxing Gibbous"), "Waxing Gibbous");  // the catalogue is there
    const ui::PangoTextMeasurer measurer;
    for (const auto& widget : LunovalWidgetBundle::body()) {
        for (const auto family : widget.supportedFamilies) {
            const auto now = Date::fromTimeIntervalSince1970(1760000000);
            for (const auto& record :
                 {std::optional(MoonWidgetData::placeholder(now)),
                  std::optional(MoonWidgetData::permissionNeeded("Asia/Tokyo", now)),
                  std::optional<MoonWidgetData>()}) {
                const auto entry = testing::drawnEntry({}, record, GetParam());
                const auto list = renderWidget(widget, family, entry, {}, measurer).list;
                for (const auto& text : testing::all<ui::DrawText>(list)) {
                    SCOPED_TRACE(std::string(widget.kind) + " " +
                                 std::string(widgetkit::familyName(family)) + ": " + text.text);
                    EXPECT_TRUE(!keys.contains(text.text) || translations.contains(text.text));
                    const auto fit = measurer.measure(text.text, text.font, text.frame.width + 0.5,
                                                      text.maxLines);
                    EXPECT_FALSE(fit.truncated);
                    const auto layout = ui::layOutText(text.text, text.font, {});
                    EXPECT_EQ(pango_layout_get_unknown_glyphs_count(layout.get()), 0);
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, Translations,
                         ::testing::Values("de_DE", "fr_FR", "es_ES", "it_IT", "pt_BR", "pl_PL",
                                           "ja_JP"));

TEST(Translations, DayCountsTakeEachLanguagesPluralForm) {
    for (const auto& [locale, days, expected] :
         std::vector<std::tuple<const char*, long, const char*>>{
             {"pl_PL", 22, "za 22 dni"}, {"fr_FR", 2, "dans 2 jours"}, {"ja_JP", 4, "4日後"}}) {
        l10n::useLanguage(locale);
        EXPECT_EQ(l10n::localizedCount("in %d days", days), expected) << locale;
    }
    l10n::useLanguage("en_US");
}

// Intents archived by earlier versions decode only the declared raw values.
TEST(SettingsIntent, DecodesOnlyTheDeclaredRawValues) {
    using enum HighlightColor;
    using Code = MoonWidgetSettingsIntentResponseCode;
    using enum MoonWidgetSettingsIntentResponseCode;
    const std::vector<std::tuple<int, std::optional<HighlightColor>, std::optional<Code>>> cases{
        {-1, {}, {}},         {0, unknown, unspecified},
        {5, orange, failure}, {6, {}, failureRequiringAppLaunch},
        {7, {}, {}},
    };
    for (const auto& [raw, color, code] : cases) {
        EXPECT_EQ(highlightColor(raw), color) << raw;
        const auto response = MoonWidgetSettingsIntentResponse::decoded(raw);
        EXPECT_EQ(response ? std::optional(response->code) : std::nullopt, code) << raw;
    }
}

}  // namespace
}  // namespace lunoval
