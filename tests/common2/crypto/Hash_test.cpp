#include "common2/crypto/Hash.h"

#include "tests/support/LogCapture.h"

#include <openssl/err.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

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

// What the library offers by name is a choice of its build where it is linked in.
TEST(CHash, EveryDigestOfTheLibraryIsThere) {
    const std::map<std::string, std::string> digests = {
        {"md5", "900150983CD24FB0D6963F7D28E17F72"},
        {"md5-sha1", "900150983CD24FB0D6963F7D28E17F72A9993E364706816ABA3E25717850C26C"
                     "9CD0D89D"},
        {"ripemd160", "8EB208F7E05D987A9B044A8E98C6B087F15A0BFC"},
        {"sha1", "A9993E364706816ABA3E25717850C26C9CD0D89D"},
        {"sha224", "23097D223405D8228642A477BDA255B32AADBCE4BDA0B3F7E36C9DA7"},
        {"sha256", "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD"},
        {"sha384", "CB00753F45A35E8BB5A03D699AC65007272C32AB0EDED1631A8B605A43FF5BED"
                   "8086072BA1E7CC2358BAECA134C825A7"},
        {"sha512", "DDAF35A193617ABACC417349AE20413112E6FA4E89A97EA20A9EEEE64B55D39A"
                   "2192992A274FC1A836BA3C23A3FEEBBD454D4423643CE80E2A9AC94FA54CA49F"},
        {"sha512-224", "4634270F707B6A54DAAE7530460842E20E37ED265CEEE9A43E8924AA"},
        {"sha512-256", "53048E2681941EF99B2E29B76B4C7DABE4C2D0C634FC6D46E0E2F13107E7AF23"},
        {"sha3-224", "E642824C3F8CF24AD09234EE7D3C766FC9A3A5168D0C94AD73B46FDF"},
        {"sha3-256", "3A985DA74FE225B2045C172D6BD390BD855F086E3E9D525B46BFE24511431532"},
        {"sha3-384", "EC01498288516FC926459F58E2C6AD8DF9B473CB0FC08C2596DA7CF0E49BE4B2"
                     "98D88CEA927AC7F539F1EDF228376D25"},
        {"sha3-512", "B751850B1A57168A5693CD924B6B096E08F621827444F70D884F5D0240D2712E"
                     "10E116E9192AF3C91A7EC57647E3934057340B4CF408D5A56592F8274EEC53F0"},
        {"blake2b512", "BA80A53F981C4D0D6A2797B69F12F6E94C212F14685AC4B74B12BB6FDBFFA2D1"
                       "7D87C5392AAB792DC252D5DE4533CC9518D38AA8DBF1925AB92386EDD4009923"},
        {"blake2s256", "508C5E8C327C14E2E1A72BA34EEB452F37458B209ED63A294D999B4C86675982"},
        {"sm3", "66C7F0F462EEEDD9D1F2D46BDC10E4E24167C4875CF2F7A2297DA02B8F4BA8E0"},
        {"shake128", "5881092DD818BF5CF8A3DDB793FBCBA7"},
        {"shake256", "483366601360A8771C6863080CC4114D8DB44530F8F1E1EE4F94EA37E78B5739"},
    };
    for (const auto& [name, digest] : digests) {
        EXPECT_EQ(hashOf(name.c_str(), "abc"), digest) << name;
    }
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
