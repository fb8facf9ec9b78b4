#include "host/bundle/ZipArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

using host::bundle::zipArchive;
using namespace std::chrono;

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        constexpr const char* digits = "0123456789abcdef";
        const auto value = static_cast<unsigned char>(byte);
        text += {digits[value >> 4], digits[value & 0xF]};
    }
    return text;
}

TEST(ZipArchive, IsAsTheFormatSays) {
    const auto time = sys_days{2026y / November / 21} + 18h + 31min + 19s;
    EXPECT_EQ(hex(zipArchive({{"a.txt", "hi\n"}}, time)),
              // file: version 2.0, UTF-8, stored, time, date, checksum, sizes, name
              "504b0304"
              "1400"
              "0008"
              "0000"
              "e993"
              "755d"
              "7a7a6fed"
              "03000000"
              "03000000"
              "0500"
              "0000"
              "612e747874"
              "68690a"
              // directory: made by Unix, the same, for the owner, at 0
              "504b0102"
              "1403"
              "1400"
              "0008"
              "0000"
              "e993"
              "755d"
              "7a7a6fed"
              "03000000"
              "03000000"
              "0500"
              "0000"
              "0000"
              "0000"
              "0000"
              "00008081"
              "00000000"
              "612e747874"
              // end: one file, 51 bytes at 38
              "504b0506"
              "0000"
              "0000"
              "0100"
              "0100"
              "33000000"
              "26000000"
              "0000");
}

TEST(ZipArchive, MayHoldNothing) {
    EXPECT_EQ(hex(zipArchive({}, sys_days{1970y / January / 1})), "504b0506" + std::string(36, '0'));
}

} // namespace
