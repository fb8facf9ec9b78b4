#include "common2/util/LocalTimeText.h"
#include "presentation-plugin/xml/StatisticsRows.h"
#include "presentation-plugin/xml/TileComposition.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedLocale_linux.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class HostLocale : public testing::TestWithParam<const char*> {
    const test::ScopedLocale locale{GetParam()};
};

TEST_P(HostLocale, TheCapitalOfATitleIsALatinOne) {
    EXPECT_EQ(statOverviewTitle("init"), "Wren Gate (Init)");
    EXPECT_EQ(statOverviewTitle("zzz"), "Wren Gate (Zzz)");
}

TEST_P(HostLocale, ACharacterOfSeveralBytesStaysWhole) {
    for (const char* state : {"\u00E4ktiv", "\u30C8", "\u0131lk", "\u00F1", "\U0001F600"}) {
        EXPECT_EQ(statOverviewTitle(state), "Wren Gate (" + std::string(state) + ")");
    }
}

TEST_P(HostLocale, OnlyPlainBlanksAreNotVisible) {
    EXPECT_FALSE(hasVisibleText(" \t\n\v\f\r"));
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const char text[] = {static_cast<char>(byte), '\0'};
        EXPECT_TRUE(hasVisibleText(text)) << byte;
    }
}

TEST_P(HostLocale, TimesAreInItsWordsAsUtf8) {
    const test::ScopedEnvironment zone("TZ", "XST-2");
    constexpr std::int64_t inAugust = 1786615200;
    const std::string text = common2::localTimeText(inAugust, L"%c");
    EXPECT_NE(text.find(GetParam() == std::string("fr_FR.ISO-8859-1")   ? "13 ao\u00FBt 2026"
                        : GetParam() == std::string("tr_TR.ISO-8859-9") ? "13 A\u011Fu 2026"
                                                                        : "2026\u5E7408\u670813\u65E5"),
              std::string::npos)
        << text;
}

INSTANTIATE_TEST_SUITE_P(Foreign, HostLocale, testing::ValuesIn(test::foreignLocales),
                         [](const auto& locale) { return std::string(locale.param, 2); });

} // namespace
