#include "views/widget_blocks.hpp"

#include "views/widget_text.hpp"

namespace lunoval {

using namespace ui;

namespace {

constexpr double kGutter = 6;

Color white(double opacity) {
    return Color::white().opacity(opacity);
}

}  // namespace

SimpleMoonPhaseView whiteMoonDisc(const Solar::SimpleMoonPhase& phase, double size, DiscTurn turn) {
    return {.moonPhase = phase,
            .size = size,
            .strokeColor = Color::white(),
            .fillColor = Color::white(),
            .phaseBackgroundColor = Color::clear(),
            .tintColor = std::nullopt,
            .applyRotation = turn == DiscTurn::byTilt,
            .strokeWidth = 1.5};
}

View dateBlock(const MoonWidgetData& data, const LocalFormat& format, double width) {
    return VStack(HorizontalAlignment::center, 0,
                  {View(Text(monthText(data.selectedTime, format))
                            .font(Font::system(9, FontWeight::bold))
                            .color(white(0.7)))
                       .padding({.top = 2}),
                   Text(dayText(data.selectedTime, format))
                       .font(Font::system(17, FontWeight::medium))
                       .color(white(0.95))})
        .frame(width, std::nullopt);
}

View timeRow(const char* symbol, const std::optional<Date>& time, const LocalFormat& format) {
    return HStack(VerticalAlignment::center, kGutter,
                  {Symbol(symbol).font(Font::system(11, FontWeight::bold)).color(white(0.95)),
                   Text(time ? shortTimeText(*time, format) : "--:--")
                       .font(Font::system(11, FontWeight::semibold))
                       .color(white(0.95))});
}

View moonBlock(const Solar::SimpleMoonPhase& phase, double discSize, double columnWidth,
               double litFontSize) {
    return HStack(
        VerticalAlignment::center, kGutter,
        {whiteMoonDisc(phase, discSize, DiscTurn::byTilt).body().frame(columnWidth, std::nullopt),
         VStack(HorizontalAlignment::leading, 3,
                {Text(phaseNameText(phase))
                     .font(Font::system(11, FontWeight::medium))
                     .color(white(0.95))
                     .minimumScaleFactor(0.6),
                 Text(litText(phase.illumination))
                     .font(Font::system(litFontSize, FontWeight::medium))
                     .color(white(0.7))})});
}

}  // namespace lunoval
