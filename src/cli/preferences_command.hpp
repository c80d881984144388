#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include <CLI/CLI.hpp>

namespace lunoval::cli {

struct PreferencesOptions {
    std::string key;
    std::string value;
};

// The command's own defaults, kept in the private store: "outputFolder" and "scale".
CLI::App* addPreferencesCommand(CLI::App& app, PreferencesOptions& options);
int runPreferences(const CLI::App& command, const PreferencesOptions& options);

// For a command that runs: where the user gave no --scale, or no --out, the stored preference
// stands in; `useFolder` is handed the stored output folder.
void applyPreferences(const CLI::App& command, double& scale,
                      const std::function<void(const std::filesystem::path&)>& useFolder);

// The folder given or stored; throws UsageError when there is neither.
const std::string& requiredOutputFolder(const std::string& out);

}  // namespace lunoval::cli
