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

}  // namespace

std::vector<const CLI::App*> addDrawingCommands(CLI::App& app) {
    std::vector<const CLI::App*> commands;
    for (const auto& [name, description] :
         {kMoonCommand, kRenderCommand, kGalleryCommand, kHostCommand}) {
        auto* command = app.add_subcommand(name, description);
        command->prefix_command()->fallthrough(false)->set_help_flag();
        commands.push_back(command);
    }
    return commands;
}

void runDrawingProgram(char** argv) {
    const auto program = installation::drawingProgram();
    // The new program starts with empty buffers.
    std::cout.flush();
    execv(program.c_str(), argv);
    throw std::runtime_error("cannot start " + program.string() + ": " + std::strerror(errno));
}

}  // namespace lunoval::cli
