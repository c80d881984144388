#include "cli/command_line.hpp"

#include <algorithm>
#include <exception>
#include <iostream>
#include <numeric>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/bundle.hpp"
#include "platform/installation.hpp"

namespace lunoval::cli {

namespace {

constexpr int kUsageError = 2;

int fail(std::string_view message, int status) {
    std::cerr << "lunoval: " << message << "\n";
    return status;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] =
                std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// What a mistyped command may have meant: the one command it begins, else the nearest ones
// within two edits.
std::vector<std::string> nearCommands(const CLI::App& scope, std::string_view word) {
    constexpr std::size_t kMostEdits = 2;
    std::vector<std::string> names;
    for (const auto* command : scope.get_subcommands([](const CLI::App*) { return true; })) {
        if (!command->get_name().empty()) names.push_back(command->get_name());
    }
    std::vector<std::string> prefixed;
    std::ranges::copy_if(names, std::back_inserter(prefixed),
                         [&](const std::string& name) { return name.starts_with(word); });
    if (prefixed.size() == 1) return prefixed;
    std::size_t nearest = kMostEdits + 1;
    for (const auto& name : names) nearest = std::min(nearest, editDistance(word, name));
    std::erase_if(names,
                  [&](const std::string& name) { return editDistance(word, name) != nearest; });
    return names;
}

std::string suggestion(const std::vector<std::string>& names) {
    if (names.empty()) return "";
    std::string text = "; did you mean " + names.front();
    for (std::size_t i = 1; i < names.size(); ++i) {
        text += (i + 1 == names.size() ? " or " : ", ") + names[i];
    }
    return text + "?";
}

const CLI::App& deepestCommand(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : deepestCommand(*chosen.front());
}

// A command line without its command: the usage on output, and for a word that names no
// command, one line saying so.
int missingCommand(const CLI::App& app) {
    const auto extra = app.remaining(true);
    if (!extra.empty() && extra.front().starts_with('-')) {
        return fail(CLI::ExtrasError(extra).what(), kUsageError);
    }
    const auto& scope = deepestCommand(app);
    std::cout << (&scope == &app ? app.help() : scope.help(app.get_name()));
    const std::string place = &scope == &app ? "" : " of " + scope.get_name();
    if (!extra.empty()) {
        return fail("unknown command '" + extra.front() + "'" + place +
                        suggestion(nearCommands(scope, extra.front())),
                    kUsageError);
    }
    if (&scope == &app) return 0;
    return fail(scope.get_name() + " needs one of the commands listed", kUsageError);
}

// Where to read the forms a command takes, for the errors that do not say them.
std::string helpHint(const CLI::App& app, const CLI::ParseError& error) {
    if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) return "";
    std::string command;
    for (const auto* scope = &deepestCommand(app); scope != nullptr; scope = scope->get_parent()) {
        if (!command.empty()) command.insert(0, " ");
        command.insert(0, scope->get_name());
    }
    return " (" + command + " --help shows the forms)";
}

bool lacksCommand(const CLI::ParseError& error) {
    return dynamic_cast<const CLI::RequiredError*>(&error) != nullptr &&
           std::string_view(error.what()).starts_with("A subcommand");
}

std::string deviceOptionsHelp(const CLI::App& app) {
    return CLI::Formatter().make_group(kDeviceOptionsGroup, false,
                                       app.get_options([](const CLI::Option* option) {
                                           return option->get_group() == kDeviceOptionsGroup;
                                       }));
}

// Every command's help ends with the device options, which the commands share.
void addDeviceOptionsFooter(CLI::App& app, const std::string& text) {
    for (auto* command : app.get_subcommands([](CLI::App*) { return true; })) {
        command->footer(command->get_footer() + text);
        addDeviceOptionsFooter(*command, text);
    }
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
    help = app.add_subcommand("help", "List the commands and what each does");
}

int CommandLine::run(int argc, char** argv, const std::function<int()>& command) {
    addDeviceOptionsFooter(app, deviceOptionsHelp(app));
    try {
        app.parse(argc, argv);
        if (help->parsed()) {
            // The program's own help, which app.help() would hand to the command chosen.
            std::cout << app.get_formatter()->make_help(&app, app.get_name(),
                                                        CLI::AppFormatMode::Normal);
            return 0;
        }
        return command();
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        if (lacksCommand(e)) return missingCommand(app);
        return fail(e.what() + helpHint(app, e), kUsageError);
    } catch (const UsageError& e) {
        return fail(e.what(), kUsageError);
    } catch (const std::exception& e) {
        return fail(e.what(), 1);
    }
}

}  // namespace lunoval::cli
