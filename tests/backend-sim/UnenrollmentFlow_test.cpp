#include "tests/backend-sim/ServiceTest.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::Received;
using ::testing::ElementsAre;

class UnenrollmentFlow : public test::ServiceTest {
protected:
    static boost::json::value running() { return state().at("unenrollment"); }
};

TEST_F(UnenrollmentFlow, LeavesADeviceThatMayEnrollAgain) {
    const std::string id = enrolled();
    unenroll(id);
    EXPECT_THAT(
        documents(),
        ElementsAre(Received{"UnenrollmentStatusNotification",
                             R"({"version":"1","status":"started","substatus":"","enrollment_id":")" + id +
                                 R"(","enrollment_context":"ctx"})"},
                    Received{"StatusNotification", test::notEnrolledStatusText()},
                    Received{"UnenrollmentStatusNotification",
                             R"({"version":"1","status":"complete","substatus":"success","enrollment_id":")" +
                                 id + R"(","enrollment_context":"ctx"})"}));
    EXPECT_TRUE(running().is_null());
    EXPECT_NE(enrolled(), id) << "a new enrollment has an id of its own";
}

TEST_F(UnenrollmentFlow, UnknownIdStartsAndEndsInInvalidEnrollmentId) {
    unenroll("none");
    EXPECT_THAT(sent(), ElementsAre("unenrollment none Started/None",
                                    "unenrollment none Complete/InvalidEnrollmentId"));
    enrolled();
    unenroll("other");
    EXPECT_THAT(sent(), ElementsAre("unenrollment other Started/None",
                                    "unenrollment other Complete/InvalidEnrollmentId"));
}

TEST_F(UnenrollmentFlow, ThatIsNotAllowedEndsInInternalError) {
    load(R"("device":{"enrolled":true,"enrollment":{"id":"e","unenroll_allowed":false}})");
    unenroll("e");
    EXPECT_THAT(sent(), ElementsAre("unenrollment e Started/None", "unenrollment e Complete/InternalError"));
    EXPECT_EQ(state().at("scenario").at("device").at("enrolled"), true);
}

TEST_F(UnenrollmentFlow, FailsAsTold) {
    const std::string id = enrolled();
    for (const auto& [word, name] : {std::pair("internal_error", "InternalError"),
                                     std::pair("invalid_enrollment_id", "InvalidEnrollmentId")}) {
        set(R"({"faults":[{"when":"unenrollment_started","fail":")" + std::string(word) + "\"}]}");
        unenroll(id);
        EXPECT_THAT(sent(), ElementsAre("unenrollment " + id + " Started/None",
                                        "unenrollment " + id + " Complete/" + name));
    }
    unenroll(id);
    EXPECT_EQ(sent().back(), "unenrollment " + id + " Complete/Success") << "the faults are used up";
}

TEST_F(UnenrollmentFlow, EachStepTakesItsTime) {
    const std::string id = enrolled();
    set(R"({"delays":{"unenrollment_started":100,"unenrollment":20}})");
    unenroll(id);
    EXPECT_EQ(running().at("stage"), "requested");
    EXPECT_EQ(running().at("enrollment_id").as_string(), id);
    pass(99);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("unenrollment " + id + " Started/None"));
    EXPECT_EQ(running().at("stage"), "started");
    pass(19);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("status active", "unenrollment " + id + " Complete/Success"));
}

TEST_F(UnenrollmentFlow, AnotherRequestOfTheConnectionTakesThePlaceOfTheFirst) {
    const std::string id = enrolled();
    set(R"({"delays":{"unenrollment":10}})");
    unenroll(id);
    pass(5);
    unenroll(id);
    pass(100);
    EXPECT_THAT(sent(),
                ElementsAre("unenrollment " + id + " Started/None", "unenrollment " + id + " Started/None",
                            "status active", "unenrollment " + id + " Complete/Success"));
}

TEST_F(UnenrollmentFlow, AnotherConnectionFailsWhileOneUnenrolls) {
    const std::string id = enrolled();
    set(R"({"delays":{"unenrollment":10}})");
    unenroll(id);
    const auto other = std::make_shared<test::Receiver>();
    const auto second = makeApi();
    ASSERT_EQ(second->Start(other), QuillApiResult::Success);
    wrensim_wait_idle();
    second->InitiateUnenrollment(
        (R"({"version":"1","enrollment_context":"","enrollment_id":")" + id + "\"}").c_str());
    wrensim_wait_idle();
    const auto all = other->all();
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(test::shortened(all[2]), "unenrollment " + id + " Started/None");
    EXPECT_EQ(test::shortened(all[3]), "unenrollment " + id + " Complete/InternalError");
    pass(10);
    EXPECT_EQ(sent().back(), "unenrollment " + id + " Complete/Success");
    EXPECT_EQ(test::shortened(other->all().back()), "status active") << "the status is for all";
}

TEST_F(UnenrollmentFlow, ServiceThatIsDownFailsIt) {
    load(R"("device":{"enrolled":true,"service_error":"ipc_failure"})");
    unenroll("enrollment-1");
    EXPECT_THAT(sent(), ElementsAre("unenrollment enrollment-1 Started/None",
                                    "unenrollment enrollment-1 Complete/InternalError"));
}

TEST_F(UnenrollmentFlow, GoingDownEndsItWithoutAWord) {
    const std::string id = enrolled();
    set(R"({"delays":{"unenrollment":10}})");
    unenroll(id);
    set(R"({"service_error":"ipc_failure"})");
    EXPECT_TRUE(running().is_null());
    pass(100);
    EXPECT_THAT(sent(), ElementsAre("unenrollment " + id + " Started/None", "status error ipc_failure"));
    set(R"({"service_error":"none"})");
    EXPECT_THAT(sent(), ElementsAre("status active, enrolled " + id));
}

TEST_F(UnenrollmentFlow, RestartFailsItInTheWayThatItsStageTakes) {
    const std::string slow =
        R"("device":{"enrolled":true},"delays":{"unenrollment_started":10,"unenrollment":10})";
    load(slow);
    unenroll("enrollment-1");
    wrensim_load_scenario("{}", nullptr, 0);
    EXPECT_THAT(sent(), ElementsAre("unenrollment enrollment-1 Started/None",
                                    "unenrollment enrollment-1 Complete/InternalError", "status init"));
    load(slow);
    unenroll("enrollment-1");
    pass(10);
    wrensim_load_scenario("{}", nullptr, 0);
    EXPECT_THAT(sent(), ElementsAre("unenrollment enrollment-1 Started/None",
                                    "unenrollment enrollment-1 Complete/InternalError", "status init"));
}

TEST_F(UnenrollmentFlow, EnrollmentMayBeAskedForMeanwhile) {
    const std::string id = enrolled();
    set(R"({"delays":{"unenrollment":10}})");
    unenroll(id);
    sent();
    enroll();
    EXPECT_THAT(sent().back(), ::testing::EndsWith("Complete/InvalidChoiceId")) << "it is still enrolled";
    pass(10);
    EXPECT_EQ(sent().back(), "unenrollment " + id + " Complete/Success");
}

TEST_F(UnenrollmentFlow, NothingOfTheEnrollmentStays) {
    load(R"("device":{"enrolled":true,"certificate":"revoked","certificate_failed_renewals":2,)"
         R"("config_sync_failures":3,"flows":{"flow_cnt_tcp":4},)"
         R"("dataplane_alerts":[{}],"dataplane_auth_requests":[{"context_id":"c"}]})");
    EXPECT_FALSE(cookie(wrensim_dataplane_login, "c").empty());
    unenroll("enrollment-1");
    EXPECT_THAT(sent(),
                ElementsAre("unenrollment enrollment-1 Started/None", "status active",
                            "unenrollment enrollment-1 Complete/Success", "dataplane 0 alerts, 0 requests"));
    EXPECT_TRUE(cookie(wrensim_dataplane_login, "c").empty());
    const std::string id = enrolled();
    EXPECT_EQ(receiver->all()[receiver->all().size() - 2].json,
              test::enrolledStatusText(id, test::startOfTime));
}

TEST_F(UnenrollmentFlow, MomentAfterAGoodOneChangesTheDevice) {
    const std::string id = enrolled();
    set(R"({"faults":[{"when":"unenrolled","set":{"choices":[]}}]})");
    unenroll(id);
    EXPECT_THAT(sent(), ElementsAre("unenrollment " + id + " Started/None", "status active",
                                    "unenrollment " + id + " Complete/Success", "status active"));
}

} // namespace
