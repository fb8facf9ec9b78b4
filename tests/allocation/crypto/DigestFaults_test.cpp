#include "common2/crypto/Hash.h"
#include "common2/util/GlobalError.h"
#include "tests/allocation/FailingAllocation.h"
#include "tests/allocation/FailingCrypto.h"

#include <gtest/gtest.h>

#include <string>

// Digests where memory runs out. Each test has a process of its own, so that the failing digest is the first.

namespace {

using test::FailingAllocation;

/// The digest of "abc"; empty where any operation fails.
std::string hashOfAbc() {
    std::error_code error;
    CHash hash(error, "sha1");
    std::string text;
    return error || hash.Update("abc", 3) || hash.GetHash(text) ? std::string() : text;
}

const std::error_code outOfMemory = makeGlobalError(QuillApiResult::AllocFailed);

constexpr const char* expectedHash = "A9993E364706816ABA3E25717850C26C9CD0D89D";

TEST(DigestFaults, ADigestThatFindsNoMemoryIsAnErrorAndTheNextOneWorks) {
    ASSERT_TRUE(test::cryptoCanFail());
    bool hasFailed = true;
    for (std::size_t allocation = 1; hasFailed; ++allocation) {
        {
            const FailingAllocation failing(allocation);
            std::error_code error;
            CHash hash(error, "sha1");
            hasFailed = failing.hasFailed();
            EXPECT_TRUE(!error || error == outOfMemory) << error;
        }
        ASSERT_EQ(hashOfAbc(), expectedHash) << allocation;
    }
}

TEST(DigestFaults, WithoutAnyMemoryADigestIsAnErrorAndLaterOnesWork) {
    ASSERT_TRUE(test::cryptoCanFail());
    for (int round = 0; round < 2; ++round) {
        const test::NoAllocation none;
        std::error_code error;
        const CHash hash(error, "sha1");
        EXPECT_EQ(error, outOfMemory);
    }
    EXPECT_EQ(hashOfAbc(), expectedHash);
}

} // namespace
