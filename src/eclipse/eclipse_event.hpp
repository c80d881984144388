#pragma once

#include <string>

#include "platform/date.hpp"

namespace lunoval {

// One catalogued eclipse.
struct EclipseEvent {
    std::string key;    // catalogue key such as "TLE"
    std::string title;  // localised display title of the key
    Date datetime;
    bool isLunarEvent = false;
    bool isVisible = true;
};

}  // namespace lunoval
