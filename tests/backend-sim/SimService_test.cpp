#include "tests/backend-sim/BackendTest.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using test::Received;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// The service without delays, on a device that is not enrolled.
class SimService : public test::BackendTest {
protected:
    SimService() {
        wrensim_set_quiet(false);
        wrensim_set_pace(0);
        api = startApi();
        receiver->waitFor(2);
        unenrollIfEnrolled();
        seen = receiver->all().size();
    }
    ~SimService() override {
        wrensim_set_quiet(true);
        wrensim_set_pace(100);
    }

    /// The next `count` documents.
    std::vector<Received> next(std::size_t count) {
        seen += count;
        const auto all = receiver->waitFor(seen);
        return {all.begin() + static_cast<std::ptrdiff_t>(seen - count), all.end()};
    }
    /// Whether nothing waits: the barrier is the next document that arrives.
    bool isSilent() {
        wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "barrier");
        return next(1).front().json == "barrier";
    }

    static std::string textOf(const Received& received, const char* key) {
        return boost::json::parse(received.json).at(key).as_string().c_str();
    }
    static std::string words(const Received& received) {
        return received.operation + " " + textOf(received, "status") + " " + textOf(received, "substatus");
    }

    /// Starts an enrollment and gives its id.
    std::string begin() {
        EXPECT_EQ(api->InitiateEnrollment(
                      R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":"ctx"})"),
                  QuillApiResult::Success);
        return textOf(next(2).back(), "enrollment_id");
    }
    void reply(const std::string& id, const std::string& cookie) {
        EXPECT_EQ(api->EnrollmentAuthReply((R"({"version":"1","enrollment_id":")" + id +
                                            R"(","enrollment_cookie":")" + cookie + "\"}")
                                               .c_str()),
                  QuillApiResult::Success);
    }
    std::string enrolled() {
        std::string id = begin();
        reply(id, "c00kie");
        next(2);
        return id;
    }
    static std::string requestFor(const std::string& id) {
        return R"({"version":"1","enrollment_id":")" + id + R"(","enrollment_context":"ctx"})";
    }

    std::shared_ptr<IQuillApi> api;
    std::size_t seen = 0;

private:
    /// The device is one for the whole process: a test before this one may have enrolled it.
    void unenrollIfEnrolled() {
        const auto status = boost::json::parse(receiver->all().back().json);
        const auto& enrollments = status.at("enrollments").as_array();
        if (!enrollments.empty()) {
            seen = receiver->all().size();
            api->InitiateUnenrollment(requestFor(enrollments.front().at("id").as_string().c_str()).c_str());
            next(3);
        }
    }
};

TEST_F(SimService, StartsWithInitAndThenTheRealStatus) {
    const auto fresh = std::make_shared<test::Receiver>();
    const auto other = makeApi();
    ASSERT_EQ(other->Start(fresh), QuillApiResult::Success);
    const auto documents = fresh->waitFor(2);
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_EQ(
        documents[0],
        (Received{
            "StatusNotification",
            R"({"version":"1","state":"init","interceptor_connectivity":"ok","posture_connectivity":"ok",)"
            R"("hw_key_store_availability":"ok","service_status":"ok","enrollment_choices":[],)"
            R"("enrollments":[]})"}));
    EXPECT_EQ(
        documents[1],
        (Received{
            "StatusNotification",
            R"({"version":"1","state":"active","interceptor_connectivity":"ok","posture_connectivity":"ok",)"
            R"("hw_key_store_availability":"ok","service_status":"ok",)"
            R"("enrollment_choices":[{"state":"available","id":"choice-1","type":"user",)"
            R"("label":"Example Corp","enroll_allowed":true}],"enrollments":[]})"}));
}

TEST_F(SimService, SendsInitAtOnceAndTheRealStatusLater) {
    wrensim_set_pace(1'000'000'000);
    const auto fresh = std::make_shared<test::Receiver>();
    const auto other = makeApi();
    ASSERT_EQ(other->Start(fresh), QuillApiResult::Success);
    wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "barrier");
    const auto documents = fresh->all();
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_EQ(textOf(documents[0], "state"), "init");
    EXPECT_EQ(documents[1].json, "barrier");
}

TEST_F(SimService, EnrollsWithACookie) {
    ASSERT_EQ(api->InitiateEnrollment(
                  R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":"ctx"})"),
              QuillApiResult::Success);
    const auto asked = next(2);
    EXPECT_EQ(words(asked[0]), "EnrollmentStatusNotification started ");
    EXPECT_EQ(textOf(asked[0], "enrollment_context"), "ctx");
    EXPECT_EQ(asked[1].operation, "EnrollmentAuthRequest");
    const std::string id = textOf(asked[0], "enrollment_id");
    EXPECT_FALSE(id.empty());
    EXPECT_EQ(asked[1].json, R"({"version":"1","enrollment_id":")" + id +
                                 R"(","start_url":"https://login.example.test/start",)"
                                 R"("end_url":"https://login.example.test/done","cookie_name":"session",)"
                                 R"("enrollment_context":"ctx"})");
    EXPECT_TRUE(isSilent());

    reply(id, "c00kie");
    const auto done = next(2);
    EXPECT_EQ(done[0].operation, "StatusNotification");
    EXPECT_THAT(done[0].json, HasSubstr(R"("enrollment_choices":[],"enrollments":[{"state":"enrolled")"));
    EXPECT_THAT(done[0].json, HasSubstr("\"id\":\"" + id + "\""));
    EXPECT_EQ(words(done[1]), "EnrollmentStatusNotification complete success");
    EXPECT_TRUE(isSilent());
}

TEST_F(SimService, EmptyCookieEndsTheEnrollment) {
    reply(begin(), "");
    EXPECT_EQ(words(next(1).front()), "EnrollmentStatusNotification complete user_authentication_error");
    EXPECT_TRUE(isSilent());
}

TEST_F(SimService, EnrollmentIsCancelled) {
    const std::string id = begin();
    ASSERT_EQ(api->CancelEnrollment((R"({"version":"1","enrollment_id":")" + id + "\"}").c_str()),
              QuillApiResult::Success);
    EXPECT_EQ(words(next(1).front()), "EnrollmentStatusNotification complete cancelled");
    reply(id, "too late");
    EXPECT_TRUE(isSilent());
}

TEST_F(SimService, UnknownChoiceCompletesWithItsError) {
    ASSERT_EQ(api->InitiateEnrollment(
                  R"({"version":"1","enrollment_choice_id":"other","enrollment_context":"ctx"})"),
              QuillApiResult::Success);
    EXPECT_EQ(words(next(1).front()), "EnrollmentStatusNotification complete invalid_choice_id");
}

TEST_F(SimService, ReEnrollsUnderTheSameId) {
    const std::string id = enrolled();
    ASSERT_EQ(api->InitiateReEnrollment(requestFor(id).c_str()), QuillApiResult::Success);
    const auto asked = next(2);
    EXPECT_EQ(textOf(asked[0], "enrollment_id"), id);
    reply(id, "again");
    EXPECT_EQ(words(next(2).back()), "EnrollmentStatusNotification complete success");
}

TEST_F(SimService, ReEnrollmentOfAnotherIdFails) {
    ASSERT_EQ(api->InitiateReEnrollment(requestFor("other").c_str()), QuillApiResult::Success);
    EXPECT_EQ(words(next(1).front()), "EnrollmentStatusNotification complete invalid_enrollment_id");
}

TEST_F(SimService, Unenrolls) {
    const std::string id = enrolled();
    ASSERT_EQ(api->InitiateUnenrollment(requestFor(id).c_str()), QuillApiResult::Success);
    const auto documents = next(3);
    EXPECT_EQ(words(documents[0]), "UnenrollmentStatusNotification started ");
    EXPECT_EQ(documents[1].operation, "StatusNotification");
    EXPECT_THAT(documents[1].json, HasSubstr(R"("enrollments":[])"));
    EXPECT_EQ(words(documents[2]), "UnenrollmentStatusNotification complete success");
}

TEST_F(SimService, UnenrollmentOfAnotherIdFails) {
    ASSERT_EQ(api->InitiateUnenrollment(requestFor("other").c_str()), QuillApiResult::Success);
    EXPECT_EQ(words(next(1).front()), "UnenrollmentStatusNotification complete invalid_enrollment_id");
}

TEST_F(SimService, ConfigSyncAndPostureReportsEndInAStatus) {
    const std::string id = enrolled();
    ASSERT_EQ(api->PerformConfigSync((R"({"version":"1","enrollment_id":")" + id + "\"}").c_str()),
              QuillApiResult::Success);
    EXPECT_THAT(next(1).front().json, Not(HasSubstr(R"("last_config_sync_success":0)")));
    ASSERT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    EXPECT_EQ(next(1).front().operation, "StatusNotification");
}

TEST_F(SimService, DataplaneReplyLeavesNothingToAsk) {
    ASSERT_EQ(api->DataplaneAuthReply(R"({"version":"1","context_id":"ctx-1","authorization_cookie":"tok"})"),
              QuillApiResult::Success);
    EXPECT_EQ(next(1).front(),
              (Received{"DataplaneNotification",
                        R"({"version":"1","dataplane_alerts":[],"dataplane_auth_requests":[]})"}));
}

TEST_F(SimService, StoppedConnectionHearsNoMore) {
    begin();
    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    const auto other = std::make_shared<test::Receiver>();
    const auto second = makeApi();
    ASSERT_EQ(second->Start(other), QuillApiResult::Success);
    other->waitFor(2);
    ASSERT_EQ(second->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    other->waitFor(3);
    EXPECT_EQ(receiver->all().size(), seen);
}

TEST_F(SimService, QuietModeSilencesTheService) {
    wrensim_set_quiet(true);
    ASSERT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    ASSERT_EQ(api->InitiateEnrollment(
                  R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":"ctx"})"),
              QuillApiResult::Success);
    EXPECT_TRUE(isSilent());
}

} // namespace
