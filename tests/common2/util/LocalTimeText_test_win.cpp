#include "common2/util/LocalTimeText.h"

#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

namespace {

TEST(LocalTimeTextHere, IsInTheFormOfTheSystem) {
    const test::ScopedEnvironment zone("TZ", "XST-2");
    EXPECT_EQ(common2::localTimeText(1700000000, L"%c"), "11/15/23 00:13:20");
    EXPECT_EQ(common2::localTimeText(-1, L"%H:%M:%S"), "") << "no time before 1970";
}

} // namespace
