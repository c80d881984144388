#include "cli/host_command.hpp"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <system_error>

#include "cli/drawing_commands.hpp"
#include "cli/gallery_command.hpp"
#include "cli/preferences_command.hpp"
#include "cli/render_command.hpp"
#include "cli/widget_request.hpp"
#include "platform/log.hpp"
#include "platform/refresh_schedule.hpp"
#include "platform/widget_center.hpp"
#include "ui/pango_text_measurer.hpp"

namespace lunoval::cli {

namespace {

namespace fs = std::filesystem;
using Clock = widgetkit::RefreshSchedule::Clock;

using Choice = std::pair<std::string_view, widgetkit::WidgetFamily>;

Choice parseChoice(const std::string& text) {
    const auto [widget, family] = widgetChoice(text);
    return {widget.kind, family};
}

// In the gallery's order, whatever the order of the choices.
std::vector<GalleryItem> selectedWidgets(const std::vector<std::string>& choices) {
    std::set<Choice> chosen;
    for (const auto& text : choices) chosen.insert(parseChoice(text));
    auto items = allWidgets();
    if (chosen.empty()) return items;
    std::erase_if(items, [&](const GalleryItem& item) {
        return !chosen.contains({item.widget.kind, item.family});
    });
    return items;
}

fs::path createFolder(const std::string& out) {
    std::error_code error;
    fs::create_directories(out, error);
    if (error) throw std::system_error(error, "cannot create the folder " + out);
    return out;
}

// SIGINT and SIGTERM as a descriptor, so one poll waits for them and for reload requests.
class StopSignals {
  public:
    StopSignals() {
        sigset_t stop;
        sigemptyset(&stop);
        sigaddset(&stop, SIGINT);
        sigaddset(&stop, SIGTERM);
        ::sigprocmask(SIG_BLOCK, &stop, &previous_);
        fd_ = ::signalfd(-1, &stop, SFD_CLOEXEC | SFD_NONBLOCK);
        if (fd_ < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    ~StopSignals() {
        ::close(fd_);
        ::sigprocmask(SIG_SETMASK, &previous_, nullptr);
    }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    [[nodiscard]] int fd() const { return fd_; }
    // Taken signals do not end the process once unblocked.
    void take() const {
        signalfd_siginfo info{};
        while (::read(fd_, &info, sizeof(info)) > 0) {
        }
    }

  private:
    sigset_t previous_{};
    int fd_ = -1;
};

enum class Wake { budget, reload, stop };

class Host {
  public:
    Host(const HostOptions& options, std::vector<GalleryItem> items)
        : options_(options), items_(std::move(items)), folder_(createFolder(options.out)) {}

    int run() {
        log::line("ℹ️ Host: listening for reload requests on " + listener_.path().string());
        for (;;) {
            const auto start = Clock::now();
            refresh();
            log::line("🔄 Host: refreshed " + counted(double(items_.size()), "widget"));
            log::line("📅 Host: next refresh in " + counted(options_.minInterval, "minute"));
            const auto wake = waitForRefresh(
                widgetkit::RefreshSchedule::after(start, Clock::now(), options_.minInterval));
            if (wake == Wake::stop) break;
            if (wake == Wake::reload) log::line("📅 Host: refreshing after a reload request");
        }
        log::line("ℹ️ Host: stopped");
        return 0;
    }

  private:
    // One timeline serves every widget; its single entry has ended at once.
    void refresh() {
        requestEntry({}, widgetkit::WidgetFamily::systemSmall, EntryPurpose::draw,
                     [this](const MoonWidgetEntry& entry) {
                         writeGallery(folder_, items_, entry, options_.render, measurer_,
                                      DrawingCores::one);
                     });
    }

    // Until the schedule's refresh falls due.
    Wake waitForRefresh(widgetkit::RefreshSchedule schedule) {
        for (;;) {
            const auto due = schedule.due();
            const auto now = Clock::now();
            if (now >= due) return schedule.dueToReload() ? Wake::reload : Wake::budget;
            std::array<pollfd, 2> watched{
                {{signals_.fd(), POLLIN, 0}, {listener_.fd(), POLLIN, 0}}};
            const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - now);
            if (::poll(watched.data(), watched.size(), int(wait.count())) < 0 && errno != EINTR) {
                throw std::system_error(errno, std::generic_category(), "poll");
            }
            if (watched[0].revents != 0) {
                signals_.take();
                return Wake::stop;
            }
            if (watched[1].revents != 0 && listener_.drain()) schedule.requestReload(Clock::now());
        }
    }

    const HostOptions& options_;
    std::vector<GalleryItem> items_;
    StopSignals signals_;
    // Before the folder: a second host writes nothing.
    widgetkit::ReloadListener listener_;
    fs::path folder_;
    ui::PangoTextMeasurer measurer_;
};

}  // namespace

CLI::App* addHostCommand(CLI::App& app, HostOptions& options) {
    auto* command = app.add_subcommand(kHostCommand.name, kHostCommand.description);
    command->add_option("--out", options.out,
                        "The folder for the images and the page (default: the stored "
                        "outputFolder preference)");
    command
        ->add_option("--widgets", options.widgets,
                     "KIND:FAMILY,... (default: every widget in every size it offers)")
        ->delimiter(',');
    addMinIntervalOption(*command, options.minInterval);
    addRenderOptions(*command, options.render);
    command->footer(
        "The device options hold for every refresh; with --at the clock stays at that instant.");
    return command;
}

int runHost(const HostOptions& options) {
    requiredOutputFolder(options.out);
    auto items = selectedWidgets(options.widgets);
    requireMinInterval(options.minInterval);
    return Host(options, std::move(items)).run();
}

}  // namespace lunoval::cli
