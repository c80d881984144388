#include <gtest/gtest.h>

#include "eclipsegen/eclipse_catalogue.hpp"
#include "platform/files.hpp"

namespace lunoval {
namespace {

// The catalogue's dates and types are compared with an independent ephemeris elsewhere; here
// the checked-in file must be the generator's output.
TEST(GeneratedEclipseCatalogue, CheckedInFileIsWhatTheGeneratorWrites) {
    EXPECT_TRUE(
        readWholeFile(LUNOVAL_ECLIPSE_CATALOGUE) ==
        eclipsegen::catalogueText(eclipsegen::firstCatalogueYear, eclipsegen::lastCatalogueYear))
        << LUNOVAL_ECLIPSE_CATALOGUE << " differs from the generator's output";
}

}  // namespace
}  // namespace lunoval
