#pragma once

#include <functional>

#include "platform/date.hpp"

namespace lunoval {

// Where a request reads "now": the system's clock, an instant the user fixed, or a test
// queue's clock that moves only when told.
using Clock = std::function<Date()>;

Clock systemClock();
Clock fixedClock(Date instant);

}  // namespace lunoval
