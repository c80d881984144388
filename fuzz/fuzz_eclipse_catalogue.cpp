// The eclipse catalogue's text; dates read without the date formatter must read as it reads
// them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "eclipse/catalogue_text.hpp"
#include "eclipse/eclipse_catalogue.hpp"
#include "platform/date_formatter.hpp"

namespace {

void checkDatesAgainstFormatter(std::string_view text) {
    static const lunoval::UTCDateParser formatter("MM/dd/yyyy HH:mm");
    for (const auto line : lunoval::splitLines(text)) {
        const auto date = lunoval::trimWhitespace(line.substr(0, line.find(',')));
        const auto direct = lunoval::fullyWrittenDate(date);
        if (direct && direct != formatter.parse(date)) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto zone = *lunoval::TimeZone::named("Pacific/Chatham");
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    (void)lunoval::parseCatalogue(text, zone);
    checkDatesAgainstFormatter(text);
    return 0;
}
