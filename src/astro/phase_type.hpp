#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lunoval::Solar {

// The eight named phases; the raw value is also the name shown to the user.
enum class PhaseType {
    newMoon,
    waxingCrescent,
    firstQuarter,
    waxingGibbous,
    fullMoon,
    waningGibbous,
    lastQuarter,
    waningCrescent,
};

std::string_view rawValue(PhaseType phase);
// Absent for any string other than the eight raw values (case-sensitive).
std::optional<PhaseType> phaseType(std::string_view rawValue);
// The case name, such as "waxingGibbous", used where phases are written for scripts.
std::string_view caseName(PhaseType phase);

// The phase a widget shows for one moment.
struct SimpleMoonPhase {
    double illumination = 0;  // lit fraction, 0 to 1
    double phaseAngle = 0;    // degrees; positive while waxing
    std::string phaseName;    // the raw value of phaseType
    PhaseType phaseType = PhaseType::newMoon;
    double tiltAngle = 0;  // degrees, [-180, 180]

    friend bool operator==(const SimpleMoonPhase&, const SimpleMoonPhase&) = default;
};

}  // namespace lunoval::Solar

// Hashes go through the raw value, as equality does.
template <>
struct std::hash<lunoval::Solar::PhaseType> {
    std::size_t operator()(lunoval::Solar::PhaseType phase) const noexcept {
        return std::hash<std::string_view>{}(lunoval::Solar::rawValue(phase));
    }
};
