// Built as C++17: the POSIX rule header of the date library is ambiguous under C++20.
#include "platform/zone_rule.hpp"

#include <date/ptz.h>
#include <algorithm>
#include <charconv>
#include <exception>
#include <fstream>
#include <optional>
#include <string>

namespace lunoval {

namespace {

constexpr const char* kZoneInfo = "/usr/share/zoneinfo/";
// The rule is the last line of the file; no rule in use is longer than this.
constexpr std::streamoff kTailBytes = 256;

std::string fileTail(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) return {};
    const std::streamoff size = file.tellg();
    const std::streamoff start = size > kTailBytes ? size - kTailBytes : 0;
    file.seekg(start);
    std::string tail(static_cast<std::size_t>(size - start), '\0');
    file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    return file ? tail : std::string{};
}

using std::chrono::seconds;

// The date library reads a change's time of day as unsigned hours of at most two digits; zone
// files may write from -167 to 167 hours (Greenland's rule changes at "-1").
constexpr seconds kLatestReadable = std::chrono::hours{99} + std::chrono::minutes{59} + seconds{59};
constexpr seconds kDefaultTime = std::chrono::hours{2};

// "[+-]h[:mm[:ss]]".
std::optional<seconds> timeOfChange(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+')) text.remove_prefix(1);
    seconds total{0};
    for (const long long unit : {3600, 60, 1}) {
        long long value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || text.front() < '0' || text.front() > '9') return std::nullopt;
        total += seconds{value * unit};
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        if (text.empty()) return negative ? -total : total;
        if (text.front() != ':') return std::nullopt;
        text.remove_prefix(1);
    }
    return std::nullopt;
}

// One of the rule's two changes, such as "M3.5.0/-1": its day and its time on that day.
struct Change {
    std::string_view day;
    seconds time;
};

std::optional<Change> changeOf(std::string_view text) {
    const auto slash = text.find('/');
    if (slash == std::string_view::npos) return Change{text, kDefaultTime};
    const auto time = timeOfChange(text.substr(slash + 1));
    if (!time) return std::nullopt;
    return Change{text.substr(0, slash), *time};
}

// "h:mm:ss" of a time that is not negative.
std::string clockText(seconds time) {
    const date::hh_mm_ss<seconds> clock{time};
    const auto twoDigits = [](auto part) {
        return (part.count() < 10 ? "0" : "") + std::to_string(part.count());
    };
    return std::to_string(clock.hours().count()) + ':' + twoDigits(clock.minutes()) + ':' +
           twoDigits(clock.seconds());
}

// The rule with both changes moved `shift` later (earlier when negative), so that their times
// read; it then answers for each instant what the zone's own rule answers `shift` before it.
struct ReadableRule {
    std::string rule;
    seconds shift;
};

// Absent for a rule without changes too: its one offset is the file's last listed period, and
// the date library leaves such a rule's fields unset (memory checkers report every lookup).
std::optional<ReadableRule> readable(std::string_view rule) {
    const auto first = rule.find(',');
    if (first == std::string_view::npos) return std::nullopt;
    const auto second = rule.find(',', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const auto start = changeOf(rule.substr(first + 1, second - first - 1));
    const auto end = changeOf(rule.substr(second + 1));
    if (!start || !end) return std::nullopt;
    const auto [earliest, latest] = std::minmax(start->time, end->time);
    const bool fits = earliest >= seconds{0} && latest <= kLatestReadable;
    const seconds shift = fits ? seconds{0} : -earliest;
    if (latest + shift > kLatestReadable) return std::nullopt;
    return ReadableRule{std::string(rule.substr(0, first)) + ',' + std::string(start->day) + '/' +
                            clockText(start->time + shift) + ',' + std::string(end->day) + '/' +
                            clockText(end->time + shift),
                        shift};
}

date::sys_info movedEarlier(date::sys_info info, seconds shift) {
    info.begin -= shift;
    info.end -= shift;
    return info;
}

}  // namespace

std::shared_ptr<const ZoneRule> ZoneRule::forZone(std::string_view identifier) {
    const std::string tail = fileTail(kZoneInfo + std::string(identifier));
    if (tail.size() < 2 || tail.back() != '\n') return nullptr;
    const auto start = tail.rfind('\n', tail.size() - 2);
    if (start == std::string::npos) return nullptr;
    return parse(std::string_view(tail).substr(start + 1, tail.size() - start - 2));
}

std::shared_ptr<const ZoneRule> ZoneRule::parse(std::string_view rule) {
    const auto read = readable(rule);
    if (!read) return nullptr;
    try {
        return std::make_shared<const ZoneRule>(
            std::make_unique<const Posix::time_zone>(read->rule), read->shift);
    } catch (const std::exception&) {
        return nullptr;
    }
}

ZoneRule::ZoneRule(std::unique_ptr<const Posix::time_zone> rule, seconds shift)
    : rule_(std::move(rule)), shift_(shift) {}
ZoneRule::~ZoneRule() = default;

date::sys_info ZoneRule::sysInfo(date::sys_seconds instant) const {
    return movedEarlier(rule_->get_info(instant + shift_), shift_);
}

date::local_info ZoneRule::localInfo(date::local_seconds local) const {
    auto info = rule_->get_info(local + shift_);
    info.first = movedEarlier(info.first, shift_);
    info.second = movedEarlier(info.second, shift_);
    return info;
}

}  // namespace lunoval
