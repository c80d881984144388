#include "cli/preferences_command.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "cli/device_options.hpp"
#include "locations/ov_storage.hpp"
#include "platform/number_text.hpp"

namespace lunoval::cli {

namespace {

constexpr const char* kOutputFolder = "outputFolder";
constexpr const char* kScale = "scale";

OVStorage& store() {
    const auto path = OVStorage::localStoragePath();
    if (readDictionaryFile(path).corrupt) {
        throw std::runtime_error(path.string() + " is not a property list; fix it or move it away");
    }
    return OVStorage::localStorage();
}

void requireKnown(const std::string& key) {
    if (key != kOutputFolder && key != kScale) {
        throw UsageError("unknown preference '" + key + "' (there are outputFolder and scale)");
    }
}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a key, then its text
PropertyValue parsedValue(const std::string& key, const std::string& text) {
    if (key == kOutputFolder) return std::filesystem::absolute(text).lexically_normal().string();
    if (const auto scale = decimalNumber(text);
        scale && *scale >= kScaleRange.min && *scale <= kScaleRange.max) {
        return *scale;
    }
    throw UsageError("the scale must be a number from 0.25 to 8, not '" + text + "'");
}

std::string shown(const PropertyValue& value) {
    return value.is_number() ? doubleDescription(value.get<double>()) : value.get<std::string>();
}

int printStored(const OVStorage& preferences, const std::string& key) {
    const auto value = preferences.objectForKey(key);
    if (!value || !(value->is_string() || value->is_number())) {
        std::cerr << "lunoval: no " << key << " is kept (lunoval preferences set " << key
                  << " VALUE keeps one)\n";
        return 1;
    }
    std::cout << shown(*value) << "\n";
    return 0;
}

}  // namespace

CLI::App* addPreferencesCommand(CLI::App& app, PreferencesOptions& options) {
    auto* command = app.add_subcommand(
        "preferences", "The command's defaults: outputFolder (for --out) and scale (for --scale)");
    auto* set = command->add_subcommand("set", "Keep a default");
    set->add_option("key", options.key, "outputFolder or scale")->required();
    set->add_option("value", options.value, "A folder, or pixels per point")->required();
    command->add_subcommand("get", "Print a default kept")
        ->add_option("key", options.key, "outputFolder or scale")
        ->required();
    command->add_subcommand("unset", "Forget a default")
        ->add_option("key", options.key, "outputFolder or scale")
        ->required();
    command->footer("Without a subcommand, prints the defaults kept.");
    return command;
}

int runPreferences(const CLI::App& command, const PreferencesOptions& options) {
    if (command.get_subcommands().empty()) {
        for (const auto& [key, value] : store().entries().items()) {
            if (value.is_string() || value.is_number())
                std::cout << key << " = " << shown(value) << "\n";
        }
        return 0;
    }
    requireKnown(options.key);
    auto& preferences = store();
    const auto action = command.get_subcommands().front()->get_name();
    if (action == "get") return printStored(preferences, options.key);
    if (action == "set") {
        preferences.setObject(parsedValue(options.key, options.value), options.key);
    } else {
        preferences.removeObject(options.key);
    }
    if (const auto failure = preferences.synchronize()) throw std::runtime_error(*failure);
    return 0;
}

const std::string& requiredOutputFolder(const std::string& out) {
    if (out.empty()) {
        throw UsageError(
            "--out is required (or keep a folder with: lunoval preferences set outputFolder DIR)");
    }
    return out;
}

void applyPreferences(const CLI::App& command, double& scale,
                      const std::function<void(const std::filesystem::path&)>& useFolder) {
    if (!command.parsed()) return;
    const bool needScale = command.count("--scale") == 0;
    const bool needFolder = command.count("--out") == 0;
    if (!needScale && !needFolder) return;
    const auto& preferences = store();
    if (const auto stored = preferences.objectForKey(kScale);
        needScale && stored && stored->is_number() && std::isfinite(stored->get<double>())) {
        scale = std::clamp(stored->get<double>(), kScaleRange.min, kScaleRange.max);
    }
    if (const auto stored = preferences.objectForKey(kOutputFolder);
        needFolder && stored && stored->is_string()) {
        const std::filesystem::path folder = stored->get<std::string>();
        std::filesystem::create_directories(folder);
        useFolder(folder);
    }
}

}  // namespace lunoval::cli
