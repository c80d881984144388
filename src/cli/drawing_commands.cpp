#include "cli/drawing_commands.hpp"

#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace lunoval::cli {

namespace {

namespace fs = std::filesystem;

// Beside this program in a build, else where it is installed.
fs::path drawingProgram() {
    std::error_code error;
    auto beside = fs::read_symlink("/proc/self/exe", error).parent_path() / "lunoval-draw";
    if (!error && fs::exists(beside, error)) return beside;
    return LUNOVAL_INSTALLED_DRAWING_PROGRAM;
}

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
    const auto program = drawingProgram();
    // The new program starts with empty buffers.
    std::cout.flush();
    execv(program.c_str(), argv);
    throw std::runtime_error("cannot start " + program.string() + ": " + std::strerror(errno));
}

}  // namespace lunoval::cli
