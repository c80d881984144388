#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "phases/moon_phase_data_manager.hpp"

namespace lunoval {

// A year's table from property-list bytes. Absent when the bytes are not a dictionary of
// string keys to arrays of strings; a month key that is not a number, or an event string that
// does not read as "<day> <hour>:<minute> <code>", is skipped.
std::optional<PhaseYear> parsePhaseYear(const std::string& bytes);

// A signed decimal integer: an optional sign, then digits only; overflow is rejected.
std::optional<std::int64_t> parseInteger(std::string_view text);

std::optional<MoonPhaseEvent> parsePhaseEvent(std::string_view text);

}  // namespace lunoval
