#include "common2/util/LocalTimeText.h"

#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

namespace {

TEST(LocalTimeTextHere, IsInTheFormOfTheSystem) {
    const test::ScopedEnvironment zone("TZ", "XST-2");
    EXPECT_EQ(common2::localTimeText(1700000000, L"%c"), "11/15/23 00:13:20");
    EXPECT_EQ(common2::localTimeText(-1, L"%H:%M:%S"), "") << "no time before 1970";
}

TEST(LocalTimeTextHere, YearsOfMoreThanFourDigitsHaveTheirLastTwo) {
    const test::ScopedEnvironment zone("TZ", "XST-2");
    EXPECT_EQ(common2::localTimeText(253402293599, L"%c %Y"), "12/31/99 23:59:59 9999");
    EXPECT_EQ(common2::localTimeText(253402293600, L"%c %Y"), "01/01/00 00:00:00 9600");
    EXPECT_EQ(common2::localTimeText(922337203685, L"%c %Y"), "09/14/97 04:48:05 9997");
}

} // namespace
