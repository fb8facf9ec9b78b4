#include "common2/data/TextBuffer.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using common2::TextBuffer;

TEST(TextBuffer, BeginsEmpty) {
    TextBuffer text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.view(), "");
    EXPECT_STREQ(text.c_str(), "");
}

TEST(TextBuffer, TakesTextsAndCharactersInOrder) {
    TextBuffer text;
    text.append("one");
    text.append(',');
    text.append("");
    text.append("two");
    EXPECT_EQ(text.view(), "one,two");
    EXPECT_STREQ(text.c_str(), "one,two");
    EXPECT_EQ(text.size(), 7u);
}

TEST(TextBuffer, KeepsWhatItHoldsWhenItGrows) {
    TextBuffer text;
    std::string expected;
    for (int round = 0; round < 1000; ++round) {
        text.append("0123456789");
        expected += "0123456789";
    }
    EXPECT_EQ(text.view(), expected);
}

TEST(TextBuffer, IsWrittenInPlace) {
    TextBuffer text;
    text.append("a");
    char* room = text.room(100);
    room[0] = 'b';
    room[1] = 'c';
    text.endAt(room + 2);
    EXPECT_EQ(text.view(), "abc");
}

TEST(TextBuffer, ClearingKeepsTheStorage) {
    TextBuffer text;
    text.append(std::string(1000, 'x'));
    const std::size_t capacity = text.capacity();
    text.clear();
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.capacity(), capacity);
}

TEST(TextBuffer, ResettingGivesAwayMoreThanIsToBeKept) {
    TextBuffer text;
    text.append(std::string(1000, 'x'));
    text.reset(100'000);
    EXPECT_TRUE(text.empty());
    EXPECT_GE(text.capacity(), 1000u);
    text.append(std::string(1000, 'x'));
    text.reset(999);
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.capacity(), 0u);
    text.append("again");
    EXPECT_EQ(text.view(), "again");
}

} // namespace
