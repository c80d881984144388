#pragma once

#include <vector>

#include <CLI/CLI.hpp>

namespace lunoval::cli {

struct CommandName {
    const char* name;
    const char* description;
};

// The commands that draw. They run in a program of their own, lunoval-draw, so that the
// others never load the drawing libraries: those are half the start-up of a short command.
inline constexpr CommandName kMoonCommand{
    "moon", "Draw the moon disc alone, for the device's place and time or a given phase"};
inline constexpr CommandName kRenderCommand{"render", "Draw one widget through its provider"};
inline constexpr CommandName kGalleryCommand{"gallery",
                                             "Draw every widget in every size, with an index.html"};
inline constexpr CommandName kHostCommand{
    "host", "Keep widget images fresh, refreshing on a budget and on reload requests"};

// The desktop widgets, the tray and the places window: the one command that loads GTK, in a
// program of its own, lunoval-desktop.
inline constexpr CommandName kDesktopCommand{
    "desktop", "Show widgets on the desktop, live, with the moon in the tray"};

// Each drawing command as a name that takes everything after it, help included, for the
// drawing program to read.
std::vector<const CLI::App*> addDrawingCommands(CLI::App& app);
// The desktop command, likewise for the desktop program.
const CLI::App* addDesktopHandOver(CLI::App& app);

// Replaces this process with the drawing program, given the same arguments; throws when it
// cannot be started.
[[noreturn]] void runDrawingProgram(char** argv);
[[noreturn]] void runDesktopProgram(char** argv);

}  // namespace lunoval::cli
