#pragma once

#include <date/tz.h>
#include <chrono>
#include <memory>
#include <string_view>

namespace Posix {
class time_zone;
}

namespace lunoval {

// The rule a zone file gives for the years after its last listed change, such as
// "CET-1CEST,M3.5.0,M10.5.0/3". The zone database alone would keep the last listed offset
// for ever, dropping daylight saving after 2037.
class ZoneRule {
  public:
    // Null when the file has no rule this reader understands, or one without changes.
    static std::shared_ptr<const ZoneRule> forZone(std::string_view identifier);
    static std::shared_ptr<const ZoneRule> parse(std::string_view rule);

    // `rule` changes `shift` later than the zone does (see parse).
    ZoneRule(std::unique_ptr<const Posix::time_zone> rule, std::chrono::seconds shift);
    ~ZoneRule();
    ZoneRule(const ZoneRule&) = delete;
    ZoneRule& operator=(const ZoneRule&) = delete;

    [[nodiscard]] date::sys_info sysInfo(date::sys_seconds instant) const;
    [[nodiscard]] date::local_info localInfo(date::local_seconds local) const;

  private:
    std::unique_ptr<const Posix::time_zone> rule_;
    std::chrono::seconds shift_;
};

}  // namespace lunoval
