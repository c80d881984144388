#include "views/widget_container.hpp"

#include "platform/localization.hpp"

namespace lunoval {

using namespace ui;

namespace {

// Widgets sit on a dark backdrop in either scheme, so they take the dark system colours.
Color dark(SystemColor name) {
    return systemColor(name, ColorScheme::dark);
}

View placeholder(const char* symbol, Color symbolColor) {
    return VStack(HorizontalAlignment::center, 8,
                  {Symbol(symbol).font(Font::title()).color(symbolColor),
                   Text(l10n::localized("Open Lunoval"))
                       .font(Font::caption())
                       .color(Color::white().opacity(0.7))});
}

}  // namespace

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): every view draws through body()
View WidgetBackground::body() const {
    return Canvas([](GraphicsContext& context) {
        const auto size = context.size();
        const auto whole = Path::rectangle({0, 0, size.width, size.height});
        context.fill(whole, LinearGradient{evenlySpaced({{0.05, 0.1, 0.2, 1.0},
                                                         {0.1, 0.15, 0.3, 1.0},
                                                         {0.15, 0.2, 0.35, 1.0}}),
                                           {0, 0},
                                           {size.width, size.height}});
        context.fill(
            whole,
            RadialGradient{
                evenlySpaced({Color::white().opacity(0.05), Color::clear()}), {0, 0}, 10, 150});
    });
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): every view draws through body()
View WidgetPermissionView::body() const {
    return VStack(HorizontalAlignment::center, 6,
                  {Symbol("location.slash.fill")
                       .font(Font::system(21))
                       .color(dark(SystemColor::orange)),
                   // Longer translations wrap rather than lose their ends.
                   Text(l10n::localized("Location Access Required"))
                       .font(Font::system(13, FontWeight::semibold))
                       .color(Color::white().opacity(0.9))
                       .lineLimit(2)
                       .multilineTextAlignment(TextAlignment::center),
                   View(Text(l10n::localized("Tap to open Settings"))
                            .font(Font::system(10, FontWeight::medium))
                            .color(dark(SystemColor::blue).opacity(0.9))
                            .lineLimit(2)
                            .multilineTextAlignment(TextAlignment::center))
                       .padding({.top = 2})})
        .padding({.top = 16, .leading = 12, .bottom = 16, .trailing = 12})
        .containerBackground(WidgetBackground{}.body())
        .widgetURL("lunoval://settings");
}

View WidgetContainer::body() const {
    const bool needsPermission = entry.widgetData && entry.widgetData->needsLocationPermission;
    return VStack(HorizontalAlignment::center, 0,
                  {needsPermission ? WidgetPermissionView{}.body() : content()});
}

View moonPlaceholder() {
    return placeholder("moon.fill", dark(SystemColor::cyan));
}

View sunPlaceholder() {
    return placeholder("sun.and.horizon.fill", dark(SystemColor::yellow));
}

}  // namespace lunoval
