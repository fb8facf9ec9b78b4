#include "common2/crypto/Hash.h"
#include "tests/allocation/FailingAllocation.h"
#include "tests/allocation/FailingCrypto.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Whether a digest can be made.
bool canDigest() {
    std::error_code error;
    CHash hash(error, "sha1");
    std::string text;
    return !error && !hash.Update("abc", 3) && !hash.GetHash(text) && !text.empty();
}

enum class FirstDigest : int { Whole, Failed, SecondFailedToo };

/// The first digest of a process of its own, in which one allocation fails, and a second one.
/// @return the process's end as `waitpid` gives it; the exit code is a FirstDigest
int endOfFirstDigest(std::size_t failingAllocation) {
    const pid_t child = ::fork();
    if (child == 0) {
        bool hasFailed = false;
        {
            const test::FailingAllocation failing(failingAllocation);
            canDigest();
            hasFailed = failing.hasFailed();
        }
        ::_exit(static_cast<int>(!canDigest() ? FirstDigest::SecondFailedToo
                                 : hasFailed  ? FirstDigest::Failed
                                              : FirstDigest::Whole));
    }
    int end = -1;
    EXPECT_EQ(::waitpid(child, &end, 0), child);
    return end;
}

TEST(DigestFaultsOnLinux, AFirstDigestThatFindsNoMemoryLeavesTheProcessAlive) {
    ASSERT_TRUE(test::cryptoCanFail());
    bool hasFailed = true;
    // The library's set-up is at the beginning. What follows is a long list of names, each stored alike.
    for (std::size_t allocation = 1; hasFailed; allocation += allocation < 150 ? 1 : 13) {
        const int end = endOfFirstDigest(allocation);
        ASSERT_TRUE(WIFEXITED(end)) << "signal " << WTERMSIG(end) << " at allocation " << allocation;
        ASSERT_NE(WEXITSTATUS(end), static_cast<int>(FirstDigest::SecondFailedToo)) << allocation;
        hasFailed = WEXITSTATUS(end) == static_cast<int>(FirstDigest::Failed);
    }
}

} // namespace
