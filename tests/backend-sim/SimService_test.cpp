#include "tests/backend-sim/ServiceTest.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::Received;
using ::testing::ElementsAre;

class SimService : public test::ServiceTest {
protected:
    /// A second connection, which was started and has heard what there was to hear.
    std::shared_ptr<IQuillApi> startOther() {
        auto started = makeApi();
        EXPECT_EQ(started->Start(other), QuillApiResult::Success);
        wrensim_wait_idle();
        return started;
    }
    test::Lines heardByOther() const {
        test::Lines lines;
        for (const Received& document : other->all()) {
            lines.push_back(test::shortened(document));
        }
        return lines;
    }

    std::shared_ptr<test::Receiver> other = std::make_shared<test::Receiver>();
};

TEST_F(SimService, StartsWithInitAndThenTheRealStatus) {
    const auto second = startOther();
    EXPECT_THAT(
        other->all(),
        ElementsAre(
            Received{"StatusNotification",
                     R"({"version":"1","state":"init","substate":"","interceptor_connectivity":"ok",)"
                     R"("posture_connectivity":"ok","hw_key_store_availability":"ok","service_status":"ok",)"
                     R"("enrollment_choices":[],"enrollments":[]})"},
            Received{"StatusNotification", test::notEnrolledStatusText()}));
}

TEST_F(SimService, SendsInitAtOnceAndTheRealStatusLater) {
    set(R"({"delays":{"first_status":400}})");
    const auto second = startOther();
    EXPECT_THAT(heardByOther(), ElementsAre("status init"));
    pass(399);
    EXPECT_EQ(other->all().size(), 1u);
    pass(1);
    EXPECT_THAT(heardByOther(), ElementsAre("status init", "status active"));
}

TEST_F(SimService, UsualServiceTellsTheRealStatusWithinASecond) {
    ASSERT_TRUE(wrensim_load_scenario("{}", nullptr, 0));
    EXPECT_THAT(sent(), ElementsAre("status init"));
    pass(999);
    EXPECT_THAT(documents(), ElementsAre(Received{"StatusNotification", test::notEnrolledStatusText()}));
}

TEST_F(SimService, UsualEnrollmentTakesSeconds) {
    ASSERT_TRUE(wrensim_load_scenario("{}", nullptr, 0));
    pass(400);
    enroll();
    const std::string id = runningId();
    pass(300);
    reply(id, enrollmentCookie(id));
    pass(1500);
    EXPECT_THAT(sent(), ElementsAre("status init", "status active", "enrollment " + id + " Started/None",
                                    "login " + id, "status active, enrolled " + id,
                                    "enrollment " + id + " Complete/Success"));
}

TEST_F(SimService, PaceStretchesEveryDelay) {
    set(R"({"delays":{"posture_report":100,"status_interval":1000}})");
    wrensim_set_pace(250);
    reportPosture();
    pass(249);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("status active"));
    pass(2249);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("status active"));

    wrensim_set_pace(0);
    reportPosture();
    EXPECT_THAT(sent(), ElementsAre("status active"));
    pass(100'000);
    EXPECT_THAT(sent(), ElementsAre()) << "no interval is left";
    wrensim_set_pace(100);
}

TEST_F(SimService, LongestDelayAtTheHighestPaceIsTaken) {
    wrensim_set_pace(UINT32_MAX);
    set(R"({"delays":{"posture_report":4294967295,"status_interval":4294967295}})");
    reportPosture();
    pass(UINT32_MAX);
    EXPECT_THAT(sent(), ElementsAre());
    wrensim_set_pace(100);
}

TEST_F(SimService, StatusIsForAllAndProgressForWhoAsked) {
    const auto second = startOther();
    const std::string id = enrolled();
    EXPECT_THAT(heardByOther(), ElementsAre("status init", "status active", "status active, enrolled " + id));
    EXPECT_EQ(state().at("connections"), 2);
}

TEST_F(SimService, StoppedConnectionHearsNoMore) {
    set(R"({"delays":{"registration":10}})");
    enroll();
    const std::string id = runningId();
    reply(id, enrollmentCookie(id));
    sent();
    const auto second = startOther();
    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    pass(10);
    EXPECT_THAT(sent(), ElementsAre());
    EXPECT_EQ(heardByOther().back(), "status active, enrolled " + id) << "what was begun goes on";
    EXPECT_EQ(state().at("connections"), 1);
}

TEST_F(SimService, DeviceOutlivesTheConnection) {
    const std::string id = enrolled();
    api.reset();
    const auto second = startOther();
    EXPECT_THAT(heardByOther(), ElementsAre("status init", "status active, enrolled " + id));
}

TEST_F(SimService, QuietModeSilencesTheService) {
    set(R"({"delays":{"posture_report":10}})");
    reportPosture();
    wrensim_set_quiet(true);
    pass(10);
    EXPECT_THAT(sent(), ElementsAre()) << "what waited is dropped";
    reportPosture();
    enroll();
    pass(10);
    EXPECT_THAT(sent(), ElementsAre());
    EXPECT_EQ(runningId(), "") << "requests don't reach the service";
    set(R"({"certificate":"revoked","enrolled":true})");
    EXPECT_THAT(sent(), ElementsAre());
    wrensim_set_quiet(false);
    reportPosture();
    pass(10);
    EXPECT_THAT(sent(), ElementsAre("status active, enrolled enrollment-1")) << "knobs do";
}

TEST_F(SimService, FaultComesWithAStart) {
    set(R"({"faults":[{"when":"start","skip":1,"set":{"service_error":"ipc_failure"}}]})");
    auto second = startOther();
    EXPECT_THAT(heardByOther(), ElementsAre("status init", "status active"));
    second.reset();
    other = std::make_shared<test::Receiver>();
    second = startOther();
    EXPECT_THAT(heardByOther(), ElementsAre("status init", "status error ipc_failure"));
}

TEST_F(SimService, ReceiverFindsTheServiceAtRest) {
    std::string told;
    receiver->inside = [&] {
        std::string text(wrensim_state(nullptr, 0), ' ');
        wrensim_state(text.data(), text.size() + 1);
        told = text;
    };
    set(R"({"enrolled":true})");
    EXPECT_THAT(told, ::testing::HasSubstr(R"("enrolled":true)"));
}

} // namespace
