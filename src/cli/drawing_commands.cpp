#include "cli/drawing_commands.hpp"

#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "platform/installation.hpp"

namespace lunoval::cli {

namespace {

namespace fs = std::filesystem;

const CLI::App* addHandedOverCommand(CLI::App& app, const CommandName& name) {
    auto* command = app.add_subcommand(name.name, name.description);
    command->prefix_command()->fallthrough(false)->set_help_flag();
    return command;
}

[[noreturn]] void runProgram(const fs::path& program, char** argv) {
    // The new program starts with empty buffers.
    std::cout.flush();
    execv(program.c_str(), argv);
    throw std::runtime_error("cannot start " + program.string() + ": " + std::strerror(errno));
}

}  // namespace

std::vector<const CLI::App*> addDrawingCommands(CLI::App& app) {
    std::vector<const CLI::App*> commands;
    for (const auto& name : {kMoonCommand, kRenderCommand, kGalleryCommand, kHostCommand}) {
        commands.push_back(addHandedOverCommand(app, name));
    }
    return commands;
}

const CLI::App* addDesktopHandOver(CLI::App& app) {
    return addHandedOverCommand(app, kDesktopCommand);
}

void runDrawingProgram(char** argv) {
    runProgram(installation::drawingProgram(), argv);
}

void runDesktopProgram(char** argv) {
    runProgram(installation::desktopProgram(), argv);
}

}  // namespace lunoval::cli
