#include "host/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using host::decodeBase64;
using host::encodeBase64;
using host::isUtf8;
using host::printable;

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

TEST(Printable, LeavesTextsAlone) {
    for (const char* text : {"", "plain", "C:\\new\\table", "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80",
                             "\xC2\xA0", "\xE2\x80\xA7", "\xE2\x80\xAF", "\xE2\x81\xA5", "\xE2\x81\xAA"}) {
        EXPECT_EQ(printable(text), text);
    }
}

struct PrintableRow {
    std::string_view text;
    const char* shown;
};
constexpr PrintableRow printableRows[] = {
    {"a\nb\rc\td", R"(a\nb\rc\td)"},
    {{"\0", 1}, R"(\u0000)"},
    {"\x1B[2J", R"(\u001B[2J)"},
    {"\x7F", R"(\u007F)"},
    {"\xC2\x80\xC2\x9F", R"(\u0080\u009F)"},
    {"\xE2\x80\xA8\xE2\x80\xA9", R"(\u2028\u2029)"},
    {"\xE2\x80\xAA\xE2\x80\xAE", R"(\u202A\u202E)"},
    {"\xE2\x81\xA6\xE2\x81\xA9", R"(\u2066\u2069)"},
    {"\x9B", R"(\x9B)"},
    {"\xE2\x80", R"(\xE2\x80)"},
};

TEST(Printable, SpellsOutWhatATerminalWouldObey) {
    for (const PrintableRow& row : printableRows) {
        EXPECT_EQ(printable(row.text), row.shown);
    }
}

} // namespace
