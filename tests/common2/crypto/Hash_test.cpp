#include "common2/crypto/Hash.h"

#include "tests/support/LogCapture.h"

#include <openssl/err.h>

#include <gtest/gtest.h>

namespace {

std::string hashOf(const char* digestName, std::string_view bytes) {
    std::error_code error;
    CHash hash(error, digestName);
    EXPECT_FALSE(error) << digestName;
    EXPECT_FALSE(hash.Update(bytes.data(), bytes.size()));
    std::string text = "stale";
    EXPECT_FALSE(hash.GetHash(text));
    return text;
}

TEST(CHash, Sha1OfAbc) { EXPECT_EQ(hashOf("sha1", "abc"), "A9993E364706816ABA3E25717850C26C9CD0D89D"); }

TEST(CHash, DigestIsChosenByName) {
    EXPECT_EQ(hashOf("md5", "abc"), "900150983CD24FB0D6963F7D28E17F72");
    EXPECT_EQ(hashOf("sha256", "abc"), "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
    EXPECT_EQ(hashOf("sha512", "abc"), "DDAF35A193617ABACC417349AE20413112E6FA4E89A97EA20A9EEEE64B55D39A"
                                       "2192992A274FC1A836BA3C23A3FEEBBD454D4423643CE80E2A9AC94FA54CA49F");
}

TEST(CHash, NothingHasAHashToo) {
    std::error_code error;
    CHash hash(error, "sha1");
    EXPECT_FALSE(hash.Update(nullptr, 0));
    std::string text;
    EXPECT_FALSE(hash.GetHash(text));
    EXPECT_EQ(text, "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
}

TEST(CHash, BytesMayComeInPieces) {
    std::error_code error;
    CHash hash(error, "sha1");
    EXPECT_FALSE(hash.Update("a", 1));
    EXPECT_FALSE(hash.Update("bc", 2));
    std::string text;
    EXPECT_FALSE(hash.GetHash(text));
    EXPECT_EQ(text, "A9993E364706816ABA3E25717850C26C9CD0D89D");
}

TEST(CHash, UnknownDigestIsAnErrorOfEveryOperation) {
    for (const char* name : {"sha-nothing", ""}) {
        std::error_code error;
        CHash hash(error, name);
        EXPECT_EQ(error.value(), 9) << name;
        EXPECT_STREQ(error.category().name(), "global_error");
        EXPECT_EQ(hash.Update("abc", 3).value(), 8);
        std::string text = "stale";
        EXPECT_EQ(hash.GetHash(text).value(), 8);
        EXPECT_EQ(text, "");
    }
}

TEST(CHash, NullNameIsANullPointer) {
    std::error_code error;
    const CHash hash(error, nullptr);
    EXPECT_EQ(error.value(), 3);
}

TEST(CHash, NullDataIsANullPointer) {
    std::error_code error;
    CHash hash(error, "sha1");
    EXPECT_EQ(hash.Update(nullptr, 1).value(), 3);
}

TEST(CHash, SecondHashFailsWithALine) {
    std::error_code error;
    CHash hash(error, "sha1");
    std::string text;
    EXPECT_FALSE(hash.GetHash(text));
    const test::LogCapture capture;
    EXPECT_EQ(hash.GetHash(text).value(), 8);
    EXPECT_EQ(text, "");
    EXPECT_EQ(capture.messages(3), std::vector<std::string>{"CHash::GetHash failed: 8"});
    EXPECT_EQ(hash.Update("abc", 3).value(), 8);
}

TEST(CHash, LeavesTheThreadsErrorsAlone) {
    ERR_clear_error();
    std::error_code error;
    const CHash hash(error, "sha-nothing");
    EXPECT_EQ(ERR_peek_error(), 0u);
}

} // namespace
