#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/location_services.hpp"

namespace lunoval {

// The older settings intent. No widget uses it; it is declared so that intents saved by
// earlier versions of the host app still decode.

// A named place as the intent system passes it.
struct Placemark {
    std::optional<std::string> name;
    std::optional<Location> location;
};

enum class HighlightColor : std::int64_t {
    unknown = 0,
    silver = 1,
    gold = 2,
    blue = 3,
    purple = 4,
    orange = 5,
};

// Absent for a raw value outside the declared cases.
std::optional<HighlightColor> highlightColor(std::int64_t rawValue);

// The member names are those the intent definition stores, so decoding finds them.
struct MoonWidgetSettingsIntent {
    std::optional<Placemark> Location;
    ::lunoval::HighlightColor HighlightColor = ::lunoval::HighlightColor::unknown;
    std::optional<bool> ShowLocation;
};

// The intent system's standard answers, in its order.
enum class MoonWidgetSettingsIntentResponseCode : std::int64_t {
    unspecified = 0,
    ready = 1,
    continueInApp = 2,
    inProgress = 3,
    success = 4,
    failure = 5,
    failureRequiringAppLaunch = 6,
};

std::optional<MoonWidgetSettingsIntentResponseCode> moonWidgetSettingsIntentResponseCode(
    std::int64_t rawValue);

// The activity that carries an intent over to the host app, by its type.
struct UserActivity {
    std::string activityType;
};

struct MoonWidgetSettingsIntentResponse {
    MoonWidgetSettingsIntentResponseCode code = MoonWidgetSettingsIntentResponseCode::unspecified;
    std::optional<UserActivity> userActivity;

    MoonWidgetSettingsIntentResponse() = default;
    MoonWidgetSettingsIntentResponse(MoonWidgetSettingsIntentResponseCode code,
                                     std::optional<UserActivity> userActivity);
    // From an archived response; absent when its code is not one of the declared ones.
    static std::optional<MoonWidgetSettingsIntentResponse> decoded(std::int64_t rawCode);
};

// How a parameter was settled: the intent system's integer-value form of an enumeration.
struct EnumResolutionResult {
    enum class Outcome { success, confirmationRequired };
    Outcome outcome = Outcome::success;
    std::int64_t value = 0;
};

struct HighlightColorResolutionResult : EnumResolutionResult {
    static HighlightColorResolutionResult successWithResolvedHighlightColor(HighlightColor color);
    static HighlightColorResolutionResult confirmationRequiredWithHighlightColorToConfirm(
        HighlightColor color);
};

struct PlacemarkResolutionResult {
    std::optional<Placemark> resolvedPlacemark;
};

// What a handler of the settings intent would answer. The extension has no handler.
class MoonWidgetSettingsIntentHandling {
  public:
    virtual ~MoonWidgetSettingsIntentHandling() = default;

    virtual void resolveLocationForMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent,
        std::function<void(PlacemarkResolutionResult)> completion) = 0;
    virtual void provideLocationOptionsCollectionForMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent, const std::optional<std::string>& searchTerm,
        std::function<void(std::vector<Placemark>, std::optional<std::string> error)>
            completion) = 0;
    virtual void provideLocationOptionsForMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent,
        std::function<void(std::vector<Placemark>, std::optional<std::string> error)>
            completion) = 0;
    virtual std::optional<Placemark> defaultLocationForMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent) = 0;
    virtual void confirmMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent,
        std::function<void(MoonWidgetSettingsIntentResponse)> completion) = 0;
    virtual void handleMoonWidgetSettings(
        const MoonWidgetSettingsIntent& intent,
        std::function<void(MoonWidgetSettingsIntentResponse)> completion) = 0;
};

}  // namespace lunoval
