#include "cli/moon_command.hpp"

#include <iostream>
#include <sstream>
#include <vector>

#include "astro/moon_phase.hpp"
#include "cli/device.hpp"
#include "cli/drawing_commands.hpp"
#include "cli/render_command.hpp"
#include "timeline/widget_data_builder.hpp"
#include "ui/painter.hpp"
#include "ui/pango_text_measurer.hpp"
#include "views/simple_moon_phase_view.hpp"

namespace lunoval::cli {

namespace {

using Solar::PhaseType;

// The largest widget, 382 points high, is 3056 pixels at the largest scale; discs of up to 8192
// pixels a side (256 MB while drawn) leave room for print, and a slip of the keyboard such as
// --size 2048 --scale 8 is refused instead of taking gigabytes and seconds.
constexpr double kMaxPixelsPerSide = 8192;

void requireDrawableSize(const MoonOptions& options) {
    if (options.size * options.scale > kMaxPixelsPerSide) {
        std::ostringstream message;
        message << "a disc of " << options.size << " points at scale " << options.scale
                << " is too large: at most " << kMaxPixelsPerSide
                << " pixels a side (--size times --scale)";
        throw UsageError(message.str());
    }
}

std::vector<PhaseType> allPhases() {
    std::vector<PhaseType> phases;
    for (int i = 0; i <= static_cast<int>(PhaseType::waningCrescent); ++i) {
        phases.push_back(static_cast<PhaseType>(i));
    }
    return phases;
}

// Accepts the displayed name ("Waxing Gibbous") or the case name ("waxingGibbous").
std::optional<PhaseType> phaseNamed(const std::string& name) {
    if (const auto phase = Solar::phaseType(name)) return phase;
    for (const auto phase : allPhases()) {
        if (Solar::caseName(phase) == name) return phase;
    }
    return std::nullopt;
}

std::string phaseNames() {
    std::string names;
    for (const auto phase : allPhases()) {
        names += (names.empty() ? "" : ", ") + std::string(Solar::caseName(phase));
    }
    return names;
}

// What a phase given without its lit fraction looks like on a typical day.
double typicalIllumination(PhaseType phase) {
    switch (phase) {
        case PhaseType::newMoon:
            return 0;
        case PhaseType::waxingCrescent:
        case PhaseType::waningCrescent:
            return 0.25;
        case PhaseType::firstQuarter:
        case PhaseType::lastQuarter:
            return 0.5;
        case PhaseType::waxingGibbous:
        case PhaseType::waningGibbous:
            return 0.75;
        case PhaseType::fullMoon:
            return 1;
    }
    return 0;
}

Solar::SimpleMoonPhase givenPhase(const MoonOptions& options) {
    const auto phase = phaseNamed(*options.phase);
    if (!phase) {
        throw UsageError("unknown phase '" + *options.phase + "' (" + phaseNames() +
                         ", or as shown, such as \"Waxing Gibbous\")");
    }
    return {.illumination = options.illumination.value_or(typicalIllumination(*phase)),
            .phaseName = std::string(Solar::rawValue(*phase)),
            .phaseType = *phase,
            .tiltAngle = options.tilt};
}

// The phase now at the device's place; the tilt needs a place, so without one the disc is not
// turned.
Solar::SimpleMoonPhase devicePhase(bool& hasPlace) {
    const auto service = device::locationService();
    hasPlace = service.kind == LocationService::Kind::fixed;
    const auto place = hasPlace ? service.fix : Location{};
    const auto now = device::now();
    const auto zone = device::timeZone();
    return Solar::moonPhase(now, zone, hasPlace ? Solar::Tilt::at(now) : Solar::Tilt::none(),
                            {place.latitude, place.longitude},
                            AstronomySources::shared(zone).phaseTable);
}

}  // namespace

CLI::App* addMoonCommand(CLI::App& app, MoonOptions& options) {
    auto* command = app.add_subcommand(kMoonCommand.name, kMoonCommand.description);
    addNumberOption(*command, "--size", options.size, "Side of the picture in points", {1, 2048});
    addNumberOption(*command, "--scale", options.scale, "Device pixels per point", kScaleRange);
    command->add_option("--out", options.out, "The image: .png, .svg or .pdf");
    auto* phase = command->add_option(
        "--phase", options.phase, "A phase by name, such as \"Waxing Gibbous\" or waxingGibbous");
    addNumberOption(*command, "--illumination", options.illumination, "Lit fraction, 0 to 1",
                    {0, 1})
        ->needs(phase);
    addNumberOption(*command, "--tilt", options.tilt, "Tilt of the lit side in degrees",
                    {-360, 360})
        ->needs(phase);
    command->add_flag("--no-rotation", options.noRotation, "Do not turn the disc by its tilt");
    return command;
}

int runMoon(const MoonOptions& options) {
    requireImageFormat(options.out);
    requireDrawableSize(options);
    bool hasPlace = true;
    const auto phase = options.phase ? givenPhase(options) : devicePhase(hasPlace);
    const SimpleMoonPhaseView disc{.moonPhase = phase,
                                   .size = options.size,
                                   .strokeColor = ui::Color::white(),
                                   .fillColor = ui::Color::white(),
                                   .phaseBackgroundColor = ui::Color::clear(),
                                   .applyRotation = hasPlace && !options.noRotation,
                                   .strokeWidth = 1.5};
    const ui::Environment environment{.displayScale = options.scale};
    const ui::PangoTextMeasurer measurer;
    const auto list =
        ui::render(disc.body(), {options.size, options.size}, {measurer, environment});
    ui::writeImage(list, environment, options.out);
    std::cout << "Wrote " << options.out << "\n";
    return 0;
}

}  // namespace lunoval::cli
