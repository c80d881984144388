#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lunoval::widgetkit {

// The sizes a widget can be shown in, home screen and lock screen.
enum class WidgetFamily {
    systemSmall,
    systemMedium,
    systemLarge,
    accessoryCircular,
    accessoryRectangular,
    accessoryInline,
};

std::string_view familyName(WidgetFamily family);
std::optional<WidgetFamily> widgetFamily(std::string_view name);
// Every family's name, smallest home-screen size first.
std::vector<std::string> familyNames();

// A family's size in points on a common 6.1-inch phone.
struct FamilySize {
    double width = 0;
    double height = 0;
};
FamilySize familySize(WidgetFamily family);

// Lock-screen families: no background, drawn in the host's tinted style.
bool isAccessory(WidgetFamily family);

// The margin the host keeps between a home-screen widget's edge and its content.
double contentMargin(WidgetFamily family);

// What the host tells a provider about the request.
struct Context {
    WidgetFamily family = WidgetFamily::systemSmall;
    // A preview in the widget gallery, which must not wait for anything.
    bool isPreview = false;
};

// When the host should ask again; the widgets always leave it to the host, after the last
// entry.
enum class ReloadPolicy { atEnd };

template <typename Entry>
struct Timeline {
    std::vector<Entry> entries;
    ReloadPolicy policy = ReloadPolicy::atEnd;
};

}  // namespace lunoval::widgetkit
