// Built as C++17: the POSIX rule header of the date library is ambiguous under C++20.
#include "platform/zone_rule.hpp"

#include <date/ptz.h>
#include <array>
#include <exception>
#include <fstream>
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

}  // namespace

std::shared_ptr<const ZoneRule> ZoneRule::forZone(std::string_view identifier) {
    const std::string tail = fileTail(kZoneInfo + std::string(identifier));
    if (tail.size() < 2 || tail.back() != '\n') return nullptr;
    const auto start = tail.rfind('\n', tail.size() - 2);
    if (start == std::string::npos) return nullptr;
    return parse(std::string_view(tail).substr(start + 1, tail.size() - start - 2));
}

std::shared_ptr<const ZoneRule> ZoneRule::parse(std::string_view rule) {
    if (rule.empty()) return nullptr;
    try {
        return std::make_shared<const ZoneRule>(std::make_unique<const Posix::time_zone>(rule));
    } catch (const std::exception&) {
        return nullptr;
    }
}

ZoneRule::ZoneRule(std::unique_ptr<const Posix::time_zone> rule) : rule_(std::move(rule)) {}
ZoneRule::~ZoneRule() = default;

date::sys_info ZoneRule::sysInfo(date::sys_seconds instant) const {
    return rule_->get_info(instant);
}

date::local_info ZoneRule::localInfo(date::local_seconds local) const {
    return rule_->get_info(local);
}

}  // namespace lunoval
