#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/lunoval_widget_bundle.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval::cli {

struct GalleryItem {
    WidgetKind widget;
    widgetkit::WidgetFamily family;
    std::optional<std::string> tapURL;

    [[nodiscard]] std::string imageName() const;
};

// A page with the images grouped by widget, under their names and descriptions.
std::string galleryPage(const std::vector<GalleryItem>& items, const MoonWidgetEntry& entry);

}  // namespace lunoval::cli
