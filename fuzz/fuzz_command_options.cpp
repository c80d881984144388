// The command's time, coordinate and number options, and the locale and zone it takes from
// its options or its environment.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "cli/device.hpp"
#include "cli/device_options.hpp"
#include "platform/date_formatter.hpp"
#include "platform/localization.hpp"
#include "platform/location_services.hpp"
#include "platform/number_text.hpp"
#include "platform/text_case.hpp"
#include "platform/time_zone.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lunoval;
    const std::string text(reinterpret_cast<const char*>(data), size);
    (void)cli::parseInstant(text, Calendar(TimeZone::utc()));
    (void)LocationService::parse(text);
    (void)LocationService::parseCoordinates(text);
    (void)decimalNumber(text);

    device::setLocaleIdentifier(text);
    const auto locale = device::localeIdentifier();
    const DateFormatter formatter{locale, TimeZone::utc()};
    const auto instant = Date::fromTimeIntervalSince1970(1759808880);
    (void)formatter.shortTime(instant);
    (void)formatter.mediumDateShortTime(instant);
    (void)formatter.pattern(instant, "MMMM yyyy");
    (void)uppercased(text, locale);
    l10n::useLanguage(locale);
    (void)l10n::localized("Full Moon");

    ::setenv("TZ", text.c_str(), 1);
    (void)environmentTimeZone();
    return 0;
}
