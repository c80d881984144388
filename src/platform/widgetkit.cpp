#include "platform/widgetkit.hpp"

#include <array>
#include <utility>

namespace lunoval::widgetkit {

namespace {
using enum WidgetFamily;
constexpr std::array<std::pair<WidgetFamily, std::string_view>, 6> kNames{{
    {systemSmall, "systemSmall"},
    {systemMedium, "systemMedium"},
    {systemLarge, "systemLarge"},
    {accessoryCircular, "accessoryCircular"},
    {accessoryRectangular, "accessoryRectangular"},
    {accessoryInline, "accessoryInline"},
}};
}  // namespace

std::string_view familyName(WidgetFamily family) {
    return kNames.at(static_cast<std::size_t>(family)).second;
}

std::optional<WidgetFamily> widgetFamily(std::string_view name) {
    for (const auto& [family, text] : kNames) {
        if (text == name) return family;
    }
    return std::nullopt;
}

}  // namespace lunoval::widgetkit
