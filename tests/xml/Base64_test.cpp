#include "xml/Base64.h"

#include <gtest/gtest.h>

namespace {

TEST(Base64Encode, PadsEveryRemainder) {
    EXPECT_EQ(base64Encode(""), "");
    EXPECT_EQ(base64Encode("f"), "Zg==");
    EXPECT_EQ(base64Encode("fo"), "Zm8=");
    EXPECT_EQ(base64Encode("foo"), "Zm9v");
    EXPECT_EQ(base64Encode("foob"), "Zm9vYg==");
    EXPECT_EQ(base64Encode("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64Encode("foobar"), "Zm9vYmFy");
}

TEST(Base64Encode, UsesTheWholeStandardAlphabet) {
    std::string bytes;
    for (unsigned value = 0; value < 64; value += 4) {
        const unsigned triple = value << 18 | (value + 1) << 12 | (value + 2) << 6 | (value + 3);
        bytes += static_cast<char>(triple >> 16 & 255);
        bytes += static_cast<char>(triple >> 8 & 255);
        bytes += static_cast<char>(triple & 255);
    }
    EXPECT_EQ(base64Encode(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64Encode, TakesBytesOfAnyValue) {
    EXPECT_EQ(base64Encode(std::string("\0\xFF\x80\0", 4)), "AP+AAA==");
    EXPECT_EQ(base64Encode("\xC3\xA9"), "w6k=");
}

TEST(Base64Encode, BreaksNoLines) {
    EXPECT_EQ(base64Encode(std::string(300, 'x')).find('\n'), std::string::npos);
    EXPECT_EQ(base64Encode(std::string(300, 'x')).size(), 400u);
}

} // namespace
