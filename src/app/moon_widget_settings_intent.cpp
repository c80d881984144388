#include "app/moon_widget_settings_intent.hpp"

#include <utility>

namespace lunoval {

namespace {

template <typename Enum>
std::optional<Enum> fromRawValue(std::int64_t rawValue, Enum last) {
    if (rawValue < 0 || rawValue > static_cast<std::int64_t>(last)) return std::nullopt;
    return static_cast<Enum>(rawValue);
}

}  // namespace

std::optional<HighlightColor> highlightColor(std::int64_t rawValue) {
    return fromRawValue(rawValue, HighlightColor::orange);
}

std::optional<MoonWidgetSettingsIntentResponseCode> moonWidgetSettingsIntentResponseCode(
    std::int64_t rawValue) {
    return fromRawValue(rawValue, MoonWidgetSettingsIntentResponseCode::failureRequiringAppLaunch);
}

MoonWidgetSettingsIntentResponse::MoonWidgetSettingsIntentResponse(
    MoonWidgetSettingsIntentResponseCode code, std::optional<UserActivity> userActivity)
    : code(code), userActivity(std::move(userActivity)) {}

std::optional<MoonWidgetSettingsIntentResponse> MoonWidgetSettingsIntentResponse::decoded(
    std::int64_t rawCode) {
    const auto code = moonWidgetSettingsIntentResponseCode(rawCode);
    if (!code) return std::nullopt;
    return MoonWidgetSettingsIntentResponse(*code, std::nullopt);
}

HighlightColorResolutionResult HighlightColorResolutionResult::successWithResolvedHighlightColor(
    HighlightColor color) {
    return {{Outcome::success, static_cast<std::int64_t>(color)}};
}

HighlightColorResolutionResult
HighlightColorResolutionResult::confirmationRequiredWithHighlightColorToConfirm(
    HighlightColor color) {
    return {{Outcome::confirmationRequired, static_cast<std::int64_t>(color)}};
}

}  // namespace lunoval
