// The eclipse catalogue's text.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "eclipse/eclipse_catalogue.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto zone = *lunoval::TimeZone::named("Pacific/Chatham");
    (void)lunoval::parseCatalogue(std::string_view(reinterpret_cast<const char*>(data), size),
                                  zone);
    return 0;
}
