#include "run_command.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cstdio>

#include "platform/files.hpp"

namespace lunoval::testing {

CommandResult runLunoval(const std::string& arguments, const std::string& environment) {
    const std::string err =
        ::testing::TempDir() + "lunoval-stderr-" + std::to_string(::getpid()) + ".txt";
    const std::string command = environment + " " + LUNOVAL_BINARY + " " + arguments + " 2>" + err;
    CommandResult run;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    while (const auto n = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        run.out.append(buffer.data(), n);
    }
    run.status = WEXITSTATUS(::pclose(pipe));
    run.err = readWholeFile(err).value_or("");
    std::remove(err.c_str());
    return run;
}

std::string freshHome(const std::filesystem::path& home) {
    return "HOME=" + home.string() +
           " XDG_CONFIG_HOME= XDG_DATA_HOME= XDG_CACHE_HOME= XDG_RUNTIME_DIR=" + home.string();
}

long countOf(const std::string& text, const std::string& part) {
    long found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

}  // namespace lunoval::testing
