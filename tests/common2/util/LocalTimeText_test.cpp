#include "common2/util/LocalTimeText.h"

#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

class LocalTimeTextTest : public testing::Test {
    test::ScopedEnvironment zone{"TZ", "XST-2"}; // two hours ahead of UTC, without rules of its own
};

TEST_F(LocalTimeTextTest, IsBrokenDownInLocalTime) {
    EXPECT_EQ(common2::localTimeText(0, L"%Y-%m-%d %H:%M:%S"), "1970-01-01 02:00:00");
    EXPECT_EQ(common2::localTimeText(1700000000, L"%d.%m.%Y"), "15.11.2023");
    EXPECT_EQ(common2::localTimeText(4102444800, L"%Y-%m-%d %H"), "2100-01-01 02") << "beyond 32 bits";
}

TEST_F(LocalTimeTextTest, IsUtf8) { EXPECT_EQ(common2::localTimeText(0, L"\u00E9 %Y"), "\xC3\xA9 1970"); }

TEST_F(LocalTimeTextTest, LongerThan63CharactersIsEmpty) {
    EXPECT_EQ(common2::localTimeText(0, std::wstring(63, L'x').c_str()), std::string(63, 'x'));
    EXPECT_EQ(common2::localTimeText(0, std::wstring(64, L'x').c_str()), "");
}

TEST_F(LocalTimeTextTest, TimeWithoutCalendarDateIsEmpty) {
    EXPECT_EQ(common2::localTimeText(std::numeric_limits<std::int64_t>::max(), L"%c"), "");
    EXPECT_EQ(common2::localTimeText(std::numeric_limits<std::int64_t>::min(), L"%c"), "");
}

} // namespace
