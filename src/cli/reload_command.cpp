#include "cli/reload_command.hpp"

#include "platform/widget_center.hpp"

namespace lunoval::cli {

CLI::App* addReloadCommand(CLI::App& app) {
    return app.add_subcommand("reload", "Ask a running host to reload every widget's timeline");
}

int runReload() {
    widgetkit::reloadAllTimelines();
    return 0;
}

}  // namespace lunoval::cli
