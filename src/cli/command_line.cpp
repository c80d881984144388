#include "cli/command_line.hpp"

#include <exception>
#include <iostream>
#include <string_view>

namespace lunoval::cli {

namespace {

constexpr int kUsageError = 2;

int fail(std::string_view message, int status) {
    std::cerr << "lunoval: " << message << "\n";
    return status;
}

}  // namespace

CommandLine::CommandLine() {
    app.require_subcommand(1);
    app.fallthrough();
    addDeviceOptions(app, device);
}

int CommandLine::run(int argc, char** argv, const std::function<int()>& command) {
    try {
        app.parse(argc, argv);
        return command();
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return fail(e.what(), kUsageError);
    } catch (const UsageError& e) {
        return fail(e.what(), kUsageError);
    } catch (const std::exception& e) {
        return fail(e.what(), 1);
    }
}

}  // namespace lunoval::cli
