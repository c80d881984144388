#include "cli/command_line.hpp"

#include <exception>
#include <iostream>
#include <string_view>
#include <system_error>

#include "platform/bundle.hpp"
#include "platform/installation.hpp"

namespace lunoval::cli {

namespace {

constexpr int kUsageError = 2;

int fail(std::string_view message, int status) {
    std::cerr << "lunoval: " << message << "\n";
    return status;
}

}  // namespace

void requireInstalledData() {
    const auto framework = BundleLocator::standard().bundle(kFrameworkBundleIdentifier);
    if (!framework || !framework->url("events", "txt", "Data")) {
        throw std::runtime_error("cannot find the phase tables and the eclipse catalogue in " +
                                 installation::dataDirectory().string() +
                                 " (reinstall lunoval, or name their folder in "
                                 "LUNOVAL_RESOURCE_PATH)");
    }
    std::error_code error;
    if (!std::filesystem::is_directory(installation::localeDirectory(), error)) {
        throw std::runtime_error("cannot find the translations in " +
                                 installation::localeDirectory().string() + " (reinstall lunoval)");
    }
}

CommandLine::CommandLine() {
    app.set_version_flag("--version", "lunoval " LUNOVAL_VERSION);
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
