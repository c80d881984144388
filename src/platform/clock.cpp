#include "platform/clock.hpp"

namespace lunoval {

Clock systemClock() {
    return [] {
        const std::chrono::duration<double> sinceEpoch =
            std::chrono::system_clock::now().time_since_epoch();
        return Date{sinceEpoch};
    };
}

Clock fixedClock(Date instant) {
    return [instant] { return instant; };
}

}  // namespace lunoval
