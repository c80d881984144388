// The command's time and coordinate options.
#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/device_options.hpp"
#include "platform/location_services.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    (void)lunoval::cli::parseInstant(text);
    (void)lunoval::LocationService::parse(text);
    (void)lunoval::LocationService::parseCoordinates(text);
    return 0;
}
