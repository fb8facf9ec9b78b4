#include "tests/backend-sim/ServiceTest.h"

#include "tests/backend-sim/Decoding.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using test::Lines;
using test::Received;
using test::startOfTime;
using ::testing::ElementsAre;

class EnrollmentFlow : public test::ServiceTest {};

TEST_F(EnrollmentFlow, EnrollsWithTheCookieOfItsLogin) {
    enroll();
    const std::string id = runningId();
    EXPECT_THAT(documents(),
                ElementsAre(Received{"EnrollmentStatusNotification",
                                     R"({"version":"1","status":"started","substatus":"","enrollment_id":")" +
                                         id + R"(","enrollment_context":"ctx"})"},
                            Received{"EnrollmentAuthRequest",
                                     R"({"version":"1","enrollment_id":")" + id +
                                         R"(","start_url":"https://login.example.test/enroll?login=)" + id +
                                         R"(","end_url":"https://login.example.test/enroll/done",)"
                                         R"("cookie_name":"session","enrollment_context":"ctx"})"}));
    EXPECT_EQ(stage(), "logging_in");

    reply(id, enrollmentCookie(id));
    EXPECT_THAT(
        documents(),
        ElementsAre(Received{"StatusNotification", test::enrolledStatusText(id, startOfTime)},
                    Received{"EnrollmentStatusNotification",
                             R"({"version":"1","status":"complete","substatus":"success","enrollment_id":")" +
                                 id + R"(","enrollment_context":"ctx"})"}));
    EXPECT_EQ(runningId(), "");
}

TEST_F(EnrollmentFlow, WrongCookieEndsInUserAuthenticationError) {
    for (const char* wrong : {"", "x", "0123456789abcdef0123456789abcdef"}) {
        const std::string id = atLogin();
        reply(id, wrong);
        EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Complete/UserAuthenticationError"));
        EXPECT_EQ(runningId(), "");
    }
}

TEST_F(EnrollmentFlow, CookieOfAnEarlierLoginIsWrong) {
    const std::string first = atLogin();
    const std::string old = enrollmentCookie(first);
    cancel(first);
    sent();
    const std::string second = atLogin();
    EXPECT_NE(first, second);
    reply(second, old);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + second + " Complete/UserAuthenticationError"));
}

TEST_F(EnrollmentFlow, EveryLoginHasACookieOfItsOwnWhileItIsOpen) {
    const std::string id = atLogin();
    const std::string cookie = enrollmentCookie(id);
    EXPECT_EQ(cookie.size(), 32u);
    EXPECT_EQ(test::ServiceTest::cookie(wrensim_enrollment_login, nullptr), cookie) << "the latest";
    EXPECT_EQ(test::ServiceTest::cookie(wrensim_dataplane_login, id.c_str()), "");
    EXPECT_EQ(enrollmentCookie("other"), "");
    reply(id, cookie);
    EXPECT_EQ(enrollmentCookie(id), "");
    EXPECT_EQ(test::ServiceTest::cookie(wrensim_enrollment_login, nullptr), "");
}

TEST_F(EnrollmentFlow, ScenarioMayFixTheLogin) {
    load(R"("logins":{"enrollment":{"start_url":"http://a/?x=1","end_url":"http://a/end","cookie_name":"n",)"
         R"("cookie":"c00kie"}})");
    enroll();
    const std::string id = runningId();
    const auto request = test::decodedAuthRequest(documents().back().json);
    EXPECT_EQ(request.start_url, "http://a/?x=1&login=" + id);
    EXPECT_EQ(request.end_url, "http://a/end");
    EXPECT_EQ(request.cookie_name, "n");
    reply(id, "c00kie");
    EXPECT_THAT(sent(),
                ElementsAre("status active, enrolled " + id, "enrollment " + id + " Complete/Success"));
}

TEST_F(EnrollmentFlow, CookieThatComesAtNoLoginIsIgnored) {
    set(R"({"delays":{"authentication_request":10,"registration":10}})");
    enroll();
    const std::string id = runningId();
    EXPECT_EQ(stage(), "started");
    reply(id, "early");
    pass(10);
    reply("other", "x");
    EXPECT_EQ(stage(), "logging_in");
    reply(id, enrollmentCookie(id));
    reply(id, "again");
    EXPECT_EQ(stage(), "registering");
    pass(10);
    reply(id, "late");
    EXPECT_THAT(sent(),
                ElementsAre("enrollment " + id + " Started/None", "login " + id,
                            "status active, enrolled " + id, "enrollment " + id + " Complete/Success"));
}

TEST_F(EnrollmentFlow, IsCancelledAtEveryStageAfterStarted) {
    set(R"({"delays":{"authentication_request":10,"registration":10,"cancellation":10}})");
    for (const std::string at : {"started", "logging_in", "registering"}) {
        enroll();
        const std::string id = runningId();
        if (at != "started") {
            pass(10);
        }
        if (at == "registering") {
            reply(id, enrollmentCookie(id));
        }
        EXPECT_EQ(stage(), at);
        sent();
        cancel(id);
        EXPECT_EQ(stage(), "cancelling");
        cancel(id);
        reply(id, enrollmentCookie(id));
        pass(9);
        EXPECT_THAT(sent(), ElementsAre()) << at;
        pass(100);
        EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Complete/Cancelled")) << at;
        EXPECT_EQ(runningId(), "");
    }
}

TEST_F(EnrollmentFlow, CancelOfAnotherEnrollmentIsIgnored) {
    cancel("other");
    const std::string id = atLogin();
    cancel("other");
    EXPECT_EQ(stage(), "logging_in");
    EXPECT_THAT(sent(), ElementsAre());
}

TEST_F(EnrollmentFlow, UnknownChoiceStartsAndEndsInInvalidChoiceId) {
    for (const char* choice : {"", "other", "CHOICE-1"}) {
        enroll(choice);
        const auto all = documents();
        ASSERT_EQ(all.size(), 2u);
        const auto started = test::decodedEnrollmentStatus(all[0].json);
        EXPECT_EQ(started.status, EnrollmentStatus::Started);
        EXPECT_FALSE(started.enrollment_id.empty());
        EXPECT_EQ(test::shortened(all[1]),
                  "enrollment " + started.enrollment_id + " Complete/InvalidChoiceId");
    }
}

TEST_F(EnrollmentFlow, ChoiceThatIsNotAllowedIsInvalid) {
    load(R"("device":{"choices":[{"id":"a","enroll_allowed":false},{"id":"b"}]})");
    enroll("a");
    EXPECT_THAT(sent().back(), ::testing::EndsWith("Complete/InvalidChoiceId"));
    enroll("b");
    EXPECT_THAT(sent().back(), ::testing::StartsWith("login "));
}

TEST_F(EnrollmentFlow, EnrolledDeviceHasNoChoice) {
    enrolled();
    enroll();
    EXPECT_THAT(sent().back(), ::testing::EndsWith("Complete/InvalidChoiceId"));
}

TEST_F(EnrollmentFlow, EnrollmentIsMadeOutAsItsChoiceSays) {
    load(R"("device":{"choices":[{"id":"a"},{"id":"b","type":"device","label":"Lab"}]})");
    enroll("b");
    reply(runningId(), cookie(wrensim_enrollment_login, nullptr));
    const auto enrollment = lastEnrollment();
    EXPECT_EQ(enrollment.at("type"), "device");
    EXPECT_EQ(enrollment.at("label"), "Lab");
}

TEST_F(EnrollmentFlow, ReEnrollmentBringsAFreshCertificateUnderTheSameId) {
    load(R"("device":{"enrolled":true,"enrollment":{"id":"old","label":"Kept","time":5},)"
         R"("certificate":"revoked","certificate_renewal":"waiting","certificate_failed_renewals":3,)"
         R"("certificate_expires":7,"certificate_last_renewal_attempt":6,"certificate_lifetime_s":100})");
    pass(1000);
    reEnroll("old");
    EXPECT_THAT(sent(), ElementsAre("enrollment old Started/None", "login old"));
    EXPECT_EQ(state().at("enrollment").at("is_renewal"), true);
    reply("old", enrollmentCookie("old"));
    EXPECT_THAT(sent(), ElementsAre("status active, enrolled old", "enrollment old Complete/Success"));
    const auto enrollment = lastEnrollment();
    EXPECT_EQ(enrollment.at("label"), "Kept");
    EXPECT_EQ(enrollment.at("enrollment_time"), startOfTime + 1);
    const auto& certificate = enrollment.at("certificate_status").as_object();
    EXPECT_EQ(certificate.at("certificate_state"), "ok");
    EXPECT_EQ(certificate.at("certificate_renewal_status"), "ok");
    EXPECT_EQ(certificate.at("failed_renewal_attempt_cnt"), 0);
    EXPECT_EQ(certificate.at("last_renewal_attempt_time"), 0);
    EXPECT_EQ(certificate.at("certificate_expiration_time"), startOfTime + 101);
}

TEST_F(EnrollmentFlow, ReEnrollmentOfAnUnknownIdEndsInInvalidEnrollmentId) {
    reEnroll("none");
    EXPECT_THAT(sent(),
                ElementsAre("enrollment none Started/None", "enrollment none Complete/InvalidEnrollmentId"));
    enrolled();
    reEnroll("other");
    EXPECT_THAT(sent(), ElementsAre("enrollment other Started/None",
                                    "enrollment other Complete/InvalidEnrollmentId"));
}

TEST_F(EnrollmentFlow, ReEnrollmentThatIsNotAllowedEndsInInternalError) {
    load(R"("device":{"enrolled":true,"enrollment":{"id":"e","reenroll_allowed":false}})");
    reEnroll("e");
    EXPECT_THAT(sent(), ElementsAre("enrollment e Started/None", "enrollment e Complete/InternalError"));
}

TEST_F(EnrollmentFlow, ReEnrollmentOfWhatIsEndedMeanwhileFails) {
    const std::string id = enrolled();
    reEnroll(id);
    const std::string cookie = enrollmentCookie(id);
    unenroll(id);
    sent();
    reply(id, cookie);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Complete/InvalidEnrollmentId"));
}

TEST_F(EnrollmentFlow, EachStepTakesItsTime) {
    set(R"({"delays":{"enrollment_started":1000,"authentication_request":200,"registration":30}})");
    enroll();
    const std::string id = runningId();
    EXPECT_EQ(stage(), "requested");
    pass(999);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Started/None"));
    pass(199);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("login " + id));
    reply(id, enrollmentCookie(id));
    pass(29);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_EQ(sent().size(), 2u);
}

TEST_F(EnrollmentFlow, CancelBeforeStartedIsIgnored) {
    set(R"({"delays":{"enrollment_started":10}})");
    enroll();
    const std::string id = runningId();
    cancel(id);
    EXPECT_EQ(stage(), "requested");
    pass(10);
    EXPECT_EQ(stage(), "logging_in");
}

TEST_F(EnrollmentFlow, AnotherRequestOfTheConnectionTakesThePlaceOfTheFirst) {
    set(R"({"delays":{"authentication_request":10}})");
    enroll();
    pass(10);
    const std::string first = runningId();
    enroll();
    const std::string second = runningId();
    EXPECT_NE(first, second);
    EXPECT_EQ(enrollmentCookie(first), "") << "its login is closed";
    pass(100);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + first + " Started/None", "login " + first,
                                    "enrollment " + second + " Started/None", "login " + second));
}

TEST_F(EnrollmentFlow, AnotherConnectionIsRefusedWhileOneEnrolls) {
    const std::string id = atLogin();
    const auto other = std::make_shared<test::Receiver>();
    const auto second = makeApi();
    ASSERT_EQ(second->Start(other), QuillApiResult::Success);
    wrensim_wait_idle();
    const auto ask = [&] {
        second->InitiateEnrollment(
            R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""})");
        wrensim_wait_idle();
    };
    ask();
    EXPECT_THAT(test::shortened(other->all().back()), ::testing::EndsWith("Error/InternalError"));
    EXPECT_EQ(runningId(), id);
    EXPECT_THAT(sent(), ElementsAre());

    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    ask();
    EXPECT_NE(runningId(), id) << "whoever is gone is not waited for";
    EXPECT_THAT(test::shortened(other->all().back()), ::testing::StartsWith("login "));
}

TEST_F(EnrollmentFlow, ServiceThatIsDownRefuses) {
    load(R"("device":{"service_error":"ipc_failure"})");
    enroll();
    EXPECT_THAT(sent(), ElementsAre(::testing::EndsWith("Error/InternalError")));
    EXPECT_EQ(runningId(), "");
}

TEST_F(EnrollmentFlow, GoingDownEndsItWithoutAWord) {
    set(R"({"delays":{"registration":10}})");
    std::string id = atLogin();
    const std::string cookie = enrollmentCookie(id);
    reply(id, cookie);
    set(R"({"service_error":"other"})");
    EXPECT_THAT(sent(), ElementsAre("status error other"));
    EXPECT_EQ(runningId(), "");
    pass(100);
    EXPECT_THAT(sent(), ElementsAre());

    set(R"({"service_error":"none"})");
    EXPECT_THAT(sent(), ElementsAre("status active"));
    id = atLogin();
    set(R"({"service_error":"other"})");
    EXPECT_EQ(enrollmentCookie(id), "") << "its login is closed";
    set(R"({"service_error":"none"})");
    sent();
    EXPECT_FALSE(enrolled().empty());
}

TEST_F(EnrollmentFlow, RestartFailsItInTheWayThatItsStageTakes) {
    const std::string slow = R"("delays":{"enrollment_started":10,"authentication_request":10})";
    load(slow);
    enroll();
    std::string id = runningId();
    wrensim_load_scenario("{}", nullptr, 0);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Error/InternalError", "status init"));
    load(slow);
    enroll();
    id = runningId();
    pass(10);
    wrensim_load_scenario("{}", nullptr, 0);
    EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Started/None",
                                    "enrollment " + id + " Complete/InternalError", "status init"));
}

TEST_F(EnrollmentFlow, LoginThatIsToFailIsOverWhenTheCookieComesFirst) {
    set(R"({"delays":{"login_failure":10,"registration":100}})");
    setFault("enrollment_login", "internal_error");
    const std::string id = atLogin();
    reply(id, enrollmentCookie(id));
    pass(100);
    EXPECT_THAT(sent(),
                ElementsAre("status active, enrolled " + id, "enrollment " + id + " Complete/Success"));
}

TEST_F(EnrollmentFlow, FaultThatTakesTheServiceDownEndsIt) {
    set(R"({"faults":[{"when":"enrollment_started","fail":"internal_error",)"
        R"("set":{"service_error":"no_service"}}]})");
    enroll();
    const Lines lines = sent();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], "status error no_service");
    EXPECT_EQ(runningId(), "");
}

TEST_F(EnrollmentFlow, MomentAfterAGoodOneChangesTheDevice) {
    set(R"({"faults":[{"when":"enrolled","set":{"certificate":"rejected"}}]})");
    const std::string id = atLogin();
    reply(id, enrollmentCookie(id));
    EXPECT_THAT(sent(), ElementsAre("status active, enrolled " + id, "enrollment " + id + " Complete/Success",
                                    "status active, enrolled " + id));
    EXPECT_EQ(lastEnrollment().at("certificate_status").at("certificate_state"), "rejected");
}

} // namespace
