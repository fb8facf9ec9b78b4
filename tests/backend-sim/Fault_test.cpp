#include "backend-sim/Fault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

sim::Fault failing(sim::Word when, sim::Word fail, std::uint32_t skip = 0, std::uint32_t times = 1) {
    return {.when = when, .skip = skip, .times = times, .fail = fail, .set = {}};
}
sim::Fault setting(sim::Word when, const char* key) {
    return {.when = when, .skip = 0, .times = 1, .fail = {}, .set = {{key, 1}}};
}

TEST(Fault, ComesOnceAtItsMoment) {
    std::vector faults{failing("enrollment_cookie", "internal_error")};
    EXPECT_EQ(sim::takeMishap(faults, "enrollment_started").fail, "");
    EXPECT_EQ(sim::takeMishap(faults, "enrollment_cookie").fail, "internal_error");
    EXPECT_EQ(sim::takeMishap(faults, "enrollment_cookie").fail, "");
    EXPECT_THAT(faults, SizeIs(0));
}

TEST(Fault, SkipsItsMomentsAndThenComesAsOftenAsTold) {
    std::vector faults{failing("enrollment_cookie", "internal_error", 2, 3)};
    std::vector<std::string> seen;
    for (int i = 0; i < 6; ++i) {
        seen.emplace_back(sim::takeMishap(faults, "enrollment_cookie").fail);
    }
    EXPECT_THAT(seen, ElementsAre("", "", "internal_error", "internal_error", "internal_error", ""));
}

TEST(Fault, EachCountsByItselfAndTheFirstFailureHasItsWay) {
    std::vector faults{failing("enrollment_cookie", "cancelled", 1),
                       failing("enrollment_cookie", "internal_error"),
                       failing("enrollment_cookie", "initialization_error", 1)};
    EXPECT_EQ(sim::takeMishap(faults, "enrollment_cookie").fail, "internal_error");
    EXPECT_EQ(sim::takeMishap(faults, "enrollment_cookie").fail, "cancelled");
    EXPECT_THAT(faults, SizeIs(0));
}

TEST(Fault, AllChangesAreMadeInTheirOrder) {
    std::vector faults{setting("start", "a"), failing("enrolled", ""), setting("start", "b")};
    const sim::Mishap mishap = sim::takeMishap(faults, "start");
    EXPECT_EQ(mishap.fail, "");
    EXPECT_THAT(mishap.changes, ElementsAre(boost::json::object{{"a", 1}}, boost::json::object{{"b", 1}}));
    EXPECT_THAT(faults, SizeIs(1));
}

TEST(Fault, FailuresBelongToTheirMoments) {
    for (const sim::Word when : {"enrollment_request", "enrollment_started", "enrollment_login",
                                 "enrollment_cookie", "enrollment_cancel"}) {
        EXPECT_THAT(sim::failuresAt(when), SizeIs(12)) << when;
    }
    EXPECT_THAT(sim::failuresAt("unenrollment_started"),
                ElementsAre("invalid_enrollment_id", "internal_error"));
    for (const sim::Word when : {"start", "enrolled", "unenrolled", "config_sync", "posture_report",
                                 "dataplane_reply", "other", ""}) {
        EXPECT_THAT(sim::failuresAt(when), SizeIs(0)) << when;
    }
}

} // namespace
