#pragma once

#include <map>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <stdexcept>

#include "astro/observer.hpp"
#include "eclipse/eclipse_catalogue.hpp"
#include "eclipse/eclipse_event.hpp"
#include "platform/bundle.hpp"
#include "platform/date.hpp"
#include "platform/time_zone.hpp"

namespace lunoval {

// Reads the eclipse catalogue at most once per process and answers which eclipse falls on a
// local day. A failed read caches nothing, so the next call reads again.
class EclipseParser {
  public:
    // Why the catalogue could not be loaded; what() is the reason's name.
    class ParsingError : public std::runtime_error {
      public:
        enum class Reason { fileNotFound, fileReadError, emptyFile };
        explicit ParsingError(Reason reason);
        [[nodiscard]] Reason reason() const { return reason_; }

      private:
        Reason reason_;
    };

    static EclipseParser& shared();

    explicit EclipseParser(BundleLocator locator);

    // The cached table, else the catalogue of the first bundle that has one, its years counted
    // in the device's zone `yearZone` (one table is kept for each zone asked). Throws
    // ParsingError when no bundle has it, it is not UTF-8, or it holds no usable line.
    std::shared_ptr<const EclipseTable> parse(const TimeZone& yearZone);
    // The table, or null after printing why it could not be loaded.
    std::shared_ptr<const EclipseTable> loadEvents(const TimeZone& yearZone);

    // The earliest catalogued eclipse on the local day of `date` in `zone`, null when there is
    // none. Its visibility is set for the place, or true without one. The event is the table's
    // own, so the next lookup overwrites what this one set.
    std::shared_ptr<const EclipseEvent> eclipseInfo(Date date, const TimeZone& zone,
                                                    std::optional<Solar::Observer> place,
                                                    const TimeZone& yearZone);

  private:
    std::shared_ptr<const EclipseTable> stored(const TimeZone& yearZone) const;

    BundleLocator locator_;
    mutable std::shared_mutex tableMutex_;
    std::map<std::string, std::shared_ptr<const EclipseTable>, std::less<>> tables_;
};

}  // namespace lunoval
