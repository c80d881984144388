#pragma once

#include <optional>
#include <string>

#include "timeline/moon_widget_data.hpp"
#include "ui/view.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace lunoval {

// Pieces the small widgets share, so they look alike.

enum class DiscTurn { byTilt, upright };

// The moon disc as the widgets draw it: white on clear with a 1.5-point outline.
SimpleMoonPhaseView whiteMoonDisc(const Solar::SimpleMoonPhase& phase, double size, DiscTurn turn);

// The month ("OCT") over the day of month, centred in a column `width` wide, for
// `selectedTime`: the rises and sets beside it are that day's.
ui::View dateBlock(const MoonWidgetData& data, const LocalFormat& format, double width);

// A rise or set symbol and its time in the entry's zone; "--:--" when there is none.
ui::View timeRow(const char* symbol, const std::optional<Date>& time, const LocalFormat& format);

// The disc centred in the left column beside the phase name and its lit text.
ui::View moonBlock(const Solar::SimpleMoonPhase& phase, double discSize, double columnWidth,
                   double litFontSize);

}  // namespace lunoval
