#include "common2/util/LocalTimeText.h"

#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

namespace {

TEST(LocalTimeTextHere, IsInTheFormOfTheSystem) {
    const test::ScopedEnvironment zone("TZ", "XST-2");
    EXPECT_EQ(common2::localTimeText(1700000000, L"%c"), "Wed Nov 15 00:13:20 2023");
    EXPECT_EQ(common2::localTimeText(-1, L"%H:%M:%S"), "01:59:59");
}

} // namespace
