#include "host/validate/Verdict.h"

#include <gmock/gmock.h>

namespace {

using host::validate::Outcome;
using host::validate::Verdict;
using host::validate::verdictIn;
using host::validate::verdictLine;

TEST(Verdict, IsReadBackFromItsLine) {
    for (const Verdict& verdict : {Verdict{}, Verdict{Outcome::Failed, "\"a\" \\ \x01 \xC3\xA9"}}) {
        const auto read = verdictIn(verdictLine(verdict) + "\n");
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(read->outcome, verdict.outcome);
        EXPECT_EQ(read->reason, verdict.reason);
    }
}

TEST(Verdict, IsFoundBehindWhatTheModuleWrites) {
    const auto read =
        verdictIn("noise\nwren-host-verdict {\n" + verdictLine({Outcome::Failed, "x"}) + "\nmore");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->reason, "x");
}

TEST(Verdict, BytesThatAreNoTextAreToldInBase64) {
    EXPECT_EQ(verdictIn(verdictLine({Outcome::Failed, "\xFF"}))->reason,
              "bytes that are not UTF-8, in Base64: /w==");
}

TEST(Verdict, NoOtherOutputHoldsOne) {
    for (const char* output : {"", "passed", "wren-host-verdict", "wren-host-verdict {}",
                               "wren-host-verdict []", "wren-host-verdict {\"passed\":1,\"reason\":\"\"}",
                               "wren-host-verdict {\"passed\":true,\"reason\":7}"}) {
        EXPECT_FALSE(verdictIn(output).has_value()) << output;
    }
}

} // namespace
