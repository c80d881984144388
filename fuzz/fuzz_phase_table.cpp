// A year's phase table as the resource bundle holds it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "phases/phase_table_parser.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    (void)lunoval::parsePhaseYear(bytes);
    return 0;
}
