// Answers "ZONE T1 T2 ..." lines (instants in seconds since 1970) with the zone's offsets from
// UTC in seconds, one line each, "unknown" for a zone the database lacks. For comparing every
// zone with another reader of the same files.
#include <iostream>
#include <sstream>
#include <string>

#include "platform/time_zone.hpp"

int main() {
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        const auto zone = lunoval::TimeZone::named(name);
        if (!zone) {
            std::cout << "unknown\n";
            continue;
        }
        for (double instant = 0; words >> instant;) {
            const auto offset =
                zone->offsetFromUTC(lunoval::Date::fromTimeIntervalSince1970(instant));
            std::cout << (offset ? std::to_string(offset->count()) : "none") << ' ';
        }
        std::cout << "\n";
    }
}
