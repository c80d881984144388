#include "cli/gallery_page.hpp"

#include <algorithm>

#include "cli/device.hpp"
#include "platform/localization.hpp"
#include "views/widget_text.hpp"

namespace lunoval::cli {

namespace {

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

// What the picture shows, for readers who cannot see it.
std::string summary(const MoonWidgetEntry& entry) {
    if (!entry.widgetData) return "waiting for a place";
    const auto& data = *entry.widgetData;
    if (data.needsLocationPermission) return "asks for location access";
    if (!data.currentMoonPhase) return "the moon, loading";
    return phaseNameText(*data.currentMoonPhase) + ", " +
           litText(data.currentMoonPhase->illumination);
}

std::string figure(const GalleryItem& item, const std::string& about) {
    const std::string family(widgetkit::familyName(item.family));
    const auto alt =
        escaped(l10n::localized(item.widget.displayName)) + ", " + family + ": " + escaped(about);
    // Shown at its size in points, as on the phone, whatever the scale it was drawn at.
    const auto size = widgetkit::familySize(item.family);
    std::string image = "<img src=\"" + item.imageName() + "\" width=\"" +
                        std::to_string(static_cast<int>(size.width)) + "\" height=\"" +
                        std::to_string(static_cast<int>(size.height)) + "\" alt=\"" + alt + "\">";
    if (item.tapURL) image = "<a href=\"" + escaped(*item.tapURL) + "\">" + image + "</a>";
    const char* screen = widgetkit::isAccessory(item.family) ? "lock" : "home";
    return std::string("<figure class=\"") + screen + "\">" + image + "<figcaption>" + family +
           "</figcaption></figure>\n";
}

// Home-screen widgets get the phone's corner radius; the page follows the reader's light or
// dark preference, and lock-screen widgets, drawn white, stand on a dark wallpaper in both.
constexpr const char* kStyle =
    ":root{color-scheme:light dark;--page:#f2f3f7;--text:#1c2233;--muted:#5a6478}"
    "@media (prefers-color-scheme:dark){:root{--page:#0b1020;--text:#e8ecf5;--muted:#aab3c8}}"
    "body{font-family:Inter,sans-serif;background:var(--page);color:var(--text);margin:2rem}"
    "section{margin-bottom:2.5rem}h2{margin:0 0 .2rem}p{margin:0 0 .3rem;color:var(--muted)}"
    ".sizes{margin-bottom:1rem;font-size:.85rem}"
    ".widgets{display:flex;flex-wrap:wrap;gap:1.5rem;align-items:flex-end}"
    "figure{margin:0;text-align:center}figcaption{font-size:.8rem;color:var(--muted)}"
    "img{display:block;max-width:100%;height:auto}.home img{border-radius:22px}"
    ".lock img{background:#1b2233;border-radius:12px;padding:6px}";

// "pl_PL.UTF-8" as a page language: "pl-PL".
std::string pageLanguage() {
    auto locale = device::localeIdentifier();
    locale = locale.substr(0, locale.find_first_of(".@"));
    std::replace(locale.begin(), locale.end(), '_', '-');
    return locale.empty() || locale == "C" || locale == "POSIX" ? "en" : escaped(locale);
}

// Two widgets share a name and a description; the sizes each offers tell them apart.
std::string sizesLine(const std::vector<GalleryItem>& items, std::string_view kind) {
    std::string line;
    for (const auto& item : items) {
        if (item.widget.kind != kind) continue;
        const auto size = widgetkit::familySize(item.family);
        line += std::string(line.empty() ? "" : " · ") +
                std::string(widgetkit::familyName(item.family)) + " " +
                std::to_string(static_cast<int>(size.width)) + "×" +
                std::to_string(static_cast<int>(size.height));
    }
    return "<p class=\"sizes\">" + line + "</p>";
}

}  // namespace

std::string GalleryItem::imageName() const {
    return std::string(widget.kind) + "-" + std::string(widgetkit::familyName(family)) + ".png";
}

std::string galleryPage(const std::vector<GalleryItem>& items, const MoonWidgetEntry& entry) {
    const auto about = summary(entry);
    std::string page = std::string("<!DOCTYPE html>\n<html lang=\"") + pageLanguage() +
                       "\"><head><meta charset=\"utf-8\">"
                       "<meta name=\"color-scheme\" content=\"light dark\">"
                       "<title>Lunoval widgets</title><style>" +
                       kStyle + "</style></head><body>\n<h1>Lunoval widgets</h1>\n";
    // Previews and a place-less entry both mean the widgets have nowhere to look from yet.
    if (!entry.widgetData || entry.widgetData->isPlaceholder) {
        page += "<p>No place yet: add yours with <code>lunoval locations add CITY</code>.</p>\n";
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto& widget = items[i].widget;
        if (i == 0 || items[i - 1].widget.kind != widget.kind) {
            if (i > 0) page += "</div></section>\n";
            page += "<section id=\"" + std::string(widget.kind) + "\"><h2>" +
                    escaped(l10n::localized(widget.displayName)) + "</h2><p>" +
                    escaped(l10n::localized(widget.description)) + "</p>" +
                    sizesLine(items, widget.kind) + "<div class=\"widgets\">\n";
        }
        page += figure(items[i], about);
    }
    if (!items.empty()) page += "</div></section>\n";
    return page + "</body></html>\n";
}

}  // namespace lunoval::cli
