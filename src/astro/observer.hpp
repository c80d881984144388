#pragma once

namespace lunoval::Solar {

// Where the sky is seen from, in degrees: north and east positive.
struct Observer {
    double latitude = 0;
    double longitude = 0;
};

}  // namespace lunoval::Solar
