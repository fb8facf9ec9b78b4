#include "common2/util/WideText.h"

#include <gtest/gtest.h>

namespace {

TEST(ToUtf8, WhatIsNoCharacterIsReplaced) {
    const wchar_t invalid[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDFFF),
                               static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1), L'x'};
    EXPECT_EQ(common2::toUtf8({invalid, 5}), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDx");
}

} // namespace
