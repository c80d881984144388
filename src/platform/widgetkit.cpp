#include "platform/widgetkit.hpp"

#include <array>

namespace lunoval::widgetkit {

namespace {
using enum WidgetFamily;
struct FamilyTraits {
    WidgetFamily family;
    std::string_view name;
    FamilySize size;
};
constexpr std::array<FamilyTraits, 6> kFamilies{{
    {systemSmall, "systemSmall", {170, 170}},
    {systemMedium, "systemMedium", {364, 170}},
    {systemLarge, "systemLarge", {364, 382}},
    {accessoryCircular, "accessoryCircular", {76, 76}},
    {accessoryRectangular, "accessoryRectangular", {172, 76}},
    {accessoryInline, "accessoryInline", {257, 26}},
}};
constexpr double kHomeScreenMargin = 16;

const FamilyTraits& traits(WidgetFamily family) {
    return kFamilies.at(static_cast<std::size_t>(family));
}
}  // namespace

std::string_view familyName(WidgetFamily family) {
    return traits(family).name;
}

std::optional<WidgetFamily> widgetFamily(std::string_view name) {
    for (const auto& entry : kFamilies) {
        if (entry.name == name) return entry.family;
    }
    return std::nullopt;
}

std::vector<std::string> familyNames() {
    std::vector<std::string> names;
    names.reserve(std::size(kFamilies));
    for (const auto& entry : kFamilies) names.emplace_back(entry.name);
    return names;
}

FamilySize familySize(WidgetFamily family) {
    return traits(family).size;
}

bool isAccessory(WidgetFamily family) {
    return family == accessoryCircular || family == accessoryRectangular ||
           family == accessoryInline;
}

double contentMargin(WidgetFamily family) {
    return isAccessory(family) ? 0 : kHomeScreenMargin;
}

}  // namespace lunoval::widgetkit
