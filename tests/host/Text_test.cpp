#include "host/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::decodeBase64;
using host::encodeBase64;
using host::isUtf8;

TEST(Utf8, AcceptsEveryLengthOfSequence) {
    for (const char* text :
         {"", "a", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "a\xC3\xA4z"}) {
        EXPECT_TRUE(isUtf8(text)) << encodeBase64(text);
    }
    EXPECT_TRUE(isUtf8(std::string(3, '\0')));
}

TEST(Utf8, RefusesWhatIsNotWellFormed) {
    for (const char* text : {
             "\x80",
             "\xBF",
             "\xC0\x80",
             "\xC1\xBF", // a stray tail, overlong twos
             "\xE0\x9F\xBF",
             "\xF0\x8F\xBF\xBF", // overlong threes and fours
             "\xED\xA0\x80",
             "\xED\xBF\xBF", // surrogates
             "\xF4\x90\x80\x80",
             "\xF5\x80\x80\x80",
             "\xFF", // past the last code point
             "\xC2",
             "\xE1\x80",
             "\xF1\x80\x80", // cut off
             "\xC2z",
             "\xE1z\x80",
             "\xE1\x80z",
             "\xF1\x80\x80z",
         }) {
        EXPECT_FALSE(isUtf8(text)) << encodeBase64(text);
        EXPECT_FALSE(isUtf8("before" + std::string(text) + "behind")) << encodeBase64(text);
    }
}

struct Base64Row {
    const char* bytes;
    const char* text;
};
constexpr Base64Row base64Rows[] = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {"\xFB\xFF\xBF", "+/+/"},
};

TEST(Base64, EncodesAndDecodes) {
    for (const Base64Row& row : base64Rows) {
        EXPECT_EQ(encodeBase64(row.bytes), row.text);
        EXPECT_EQ(decodeBase64(row.text), row.bytes);
    }
    const std::string nul("\0a\0", 3);
    EXPECT_EQ(decodeBase64(encodeBase64(nul)), nul);
}

TEST(Base64, RefusesAnyOtherText) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zm9v=", "Zm9vY===", "====", "=",
                             "Zg==Zg==", "Z=g=", "Zm 8=", "Zm8-", "Zm9v\n", "Zh==", "Zm9=", "Zm9\xFF"}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

} // namespace
