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

}  // namespace lunoval::testing
