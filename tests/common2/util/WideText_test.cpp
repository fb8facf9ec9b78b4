#include "common2/util/WideText.h"

#include <gtest/gtest.h>

namespace {

TEST(ToUtf8, WritesOneToFourBytesACharacter) {
    EXPECT_EQ(common2::toUtf8(L""), "");
    EXPECT_EQ(common2::toUtf8(L"plain"), "plain");
    EXPECT_EQ(common2::toUtf8(L"\x7F\x80\u07FF"), "\x7F\xC2\x80\xDF\xBF");
    EXPECT_EQ(common2::toUtf8(L"\u0800\uFFFF"), "\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(common2::toUtf8(L"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(ToUtf8, HalfOfAPairIsReplaced) {
    const wchar_t invalid[] = {static_cast<wchar_t>(0xDFFF), L'x', static_cast<wchar_t>(0xD800), L'x',
                               static_cast<wchar_t>(0xD800)};
    EXPECT_EQ(common2::toUtf8({invalid, 5}), "\xEF\xBF\xBDx\xEF\xBF\xBDx\xEF\xBF\xBD");
}

} // namespace
