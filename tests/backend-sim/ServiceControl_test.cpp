#include "tests/backend-sim/ServiceTest.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;

/// Scenarios, knobs and the state, as the control header gives them.
class ServiceControl : public test::ServiceTest {
protected:
    static constexpr std::size_t errorSize = 200;

    /// The complaint about a scenario or about knobs; empty if it was taken.
    static std::string complaint(bool (*take)(const char*, char*, size_t), const char* json) {
        std::vector<char> error(errorSize, 'x');
        const bool isTaken = take(json, error.data(), error.size());
        EXPECT_EQ(isTaken, error.front() == '\0');
        return error.data();
    }
    static std::string device() { return boost::json::serialize(state().at("scenario").at("device")); }
};

TEST_F(ServiceControl, TellsWhatIsWrongAndChangesNothing) {
    const std::string before = device();
    EXPECT_EQ(
        complaint(wrensim_load_scenario, R"({"device":{"enrolled":true,"certificate":"expird"}})"),
        "/device/certificate: 'expird' is none of ok, expired, revoked, rejected, internal_error, unknown");
    EXPECT_EQ(complaint(wrensim_set, R"({"enrolled":true,"certificate":"expird"})"),
              "/certificate: 'expird' is none of ok, expired, revoked, rejected, internal_error, unknown");
    EXPECT_EQ(complaint(wrensim_set, "{"), "line 1, column 2: incomplete JSON");
    EXPECT_EQ(complaint(wrensim_set, nullptr), "no text was given");
    EXPECT_EQ(complaint(wrensim_load_scenario, nullptr), "no text was given");
    EXPECT_EQ(device(), before);
    EXPECT_THAT(sent(), ElementsAre());
    EXPECT_EQ(complaint(wrensim_set, R"({"certificate":"expired"})"), "");
    EXPECT_EQ(complaint(wrensim_load_scenario, "{}"), "");
}

TEST_F(ServiceControl, ErrorIsCutToItsBuffer) {
    char error[9] = "xxxxxxxx";
    EXPECT_FALSE(wrensim_set("{\"a\xc3\xa4\xe2\x82\xac\":1}", error, 6));
    EXPECT_STREQ(error, "/a\xc3\xa4") << "no character is cut in half";
    EXPECT_EQ(error[5], 'x') << "shorter than it could be by that";
    EXPECT_FALSE(wrensim_set("[", error, 1));
    EXPECT_STREQ(error, "");
    EXPECT_FALSE(wrensim_set("[", error, 0));
    EXPECT_FALSE(wrensim_set("[", nullptr, 0));
    EXPECT_FALSE(wrensim_set("[", nullptr, 100));
    EXPECT_TRUE(wrensim_set("{}", nullptr, 0));
}

TEST_F(ServiceControl, StateIsTheUsualOne) {
    const auto all = state().as_object();
    EXPECT_TRUE(all.at("enrollment").is_null());
    EXPECT_TRUE(all.at("unenrollment").is_null());
    EXPECT_EQ(all.at("connections"), 1);
    EXPECT_EQ(all.at("pace"), 100);
    EXPECT_EQ(all.at("unix_time"), test::startOfTime);
    EXPECT_EQ(all.at("scenario").at("device").at("enrolled"), false);
    EXPECT_EQ(all.size(), 6u);
}

TEST_F(ServiceControl, StateTellsWhatRuns) {
    enroll();
    const std::string id = runningId();
    EXPECT_EQ(boost::json::serialize(state().at("enrollment")),
              R"({"enrollment_id":")" + id + R"(","is_renewal":false,"stage":"logging_in"})");
    set(R"({"delays":{"unenrollment":5}})");
    unenroll("e");
    EXPECT_EQ(boost::json::serialize(state().at("unenrollment")),
              R"({"enrollment_id":"e","stage":"started"})");
}

TEST_F(ServiceControl, StateHoldsNoCookieThatTheServiceMadeUp) {
    load(R"("device":{"dataplane_auth_requests":[{"context_id":"c"}],"enrolled":true})");
    reEnroll("enrollment-1");
    const std::string text = boost::json::serialize(state());
    EXPECT_EQ(text.find(enrollmentCookie("enrollment-1")), text.npos);
    EXPECT_EQ(text.find(cookie(wrensim_dataplane_login, "c")), text.npos);
}

TEST_F(ServiceControl, StateCanBeLoadedAgain) {
    load(R"("device":{"certificate_lifetime_s":100,"traffic":{"flow_cnt_tcp":2},"posture":"bad_response"},)"
         R"("delays":{"status_interval":1000},)"
         R"("faults":[{"when":"config_sync","skip":5,"set":{"posture":"ok"}}])");
    const std::string id = enrolled();
    pass(3000);
    syncConfig(id);
    const std::string scenario = boost::json::serialize(state().at("scenario"));
    EXPECT_THAT(scenario, ::testing::HasSubstr(R"("skip":4)"));
    ASSERT_TRUE(wrensim_load_scenario("{}", nullptr, 0));
    wrensim_wait_idle();
    EXPECT_NE(boost::json::serialize(state().at("scenario")), scenario);
    EXPECT_EQ(complaint(wrensim_load_scenario, scenario.c_str()), "");
    EXPECT_EQ(boost::json::serialize(state().at("scenario")), scenario);
}

TEST_F(ServiceControl, StateIsCutToItsBuffer) {
    const std::size_t length = wrensim_state(nullptr, 0);
    EXPECT_GT(length, 1000u);
    char text[12] = "xxxxxxxxxxx";
    EXPECT_EQ(wrensim_state(text, sizeof text), length);
    EXPECT_STREQ(text, "{\"scenario\"");
}

TEST_F(ServiceControl, StateWaitsForNoCallback) {
    test::Event entered;
    test::Event release;
    receiver->inside = [&] {
        entered.happen();
        release.await();
    };
    ASSERT_TRUE(wrensim_set(R"({"enrolled":true})", nullptr, 0));
    entered.await();
    std::string text(wrensim_state(nullptr, 0), ' ');
    wrensim_state(text.data(), text.size() + 1);
    EXPECT_THAT(text, ::testing::HasSubstr(R"("enrolled":true)"))
        << "the step has ended, its document is on its way";
    release.happen();
    wrensim_wait_idle();
}

TEST_F(ServiceControl, KnobsTellWhatTheyChange) {
    const std::string knobs[] = {
        R"({"interceptor":"disconnected"})",
        R"({"posture":"unreachable"})",
        R"({"hw_key_store":"not_supported"})",
        R"({"service_status":"pending"})",
        R"({"choices":[]})",
        R"({"device":{"interceptor":"ok"}})",
    };
    for (const std::string& knob : knobs) {
        set(knob);
        EXPECT_THAT(sent(), ElementsAre("status active")) << knob;
        set(knob);
        EXPECT_THAT(sent(), ElementsAre()) << knob << " again";
    }
    for (const char* knob : {R"({"certificate":"revoked"})", R"({"delays":{"registration":1}})",
                             R"({"dataplane_alerts":[{}]})", R"({"faults":[]})", "{}"}) {
        set(knob);
        EXPECT_THAT(sent(), ElementsAre()) << knob << " is not to be seen while there is no enrollment";
    }
}

TEST_F(ServiceControl, KnobMayEnrollAndUnenroll) {
    set(R"({"enrolled":true,"enrollment":{"id":"made"}})");
    EXPECT_THAT(documents(), ElementsAre(test::Received{
                                 "StatusNotification", test::enrolledStatusText("made", test::startOfTime)}));
    set(R"({"enrolled":false})");
    EXPECT_THAT(documents(),
                ElementsAre(test::Received{"StatusNotification", test::notEnrolledStatusText()}));
}

TEST_F(ServiceControl, EveryServiceErrorIsTheStatusesSubstate) {
    for (const char* word : {"ipc_failure", "no_choice", "not_single_user", "no_service", "other"}) {
        set(R"({"service_error":")" + std::string(word) + "\"}");
        EXPECT_THAT(documents(), ElementsAre(test::Received{
                                     "StatusNotification",
                                     R"({"version":"1","state":"error","substate":")" + std::string(word) +
                                         R"(","interceptor_connectivity":"ok","posture_connectivity":"ok",)"
                                         R"("hw_key_store_availability":"ok","service_status":"ok"})"}));
    }
    set(R"({"service_status":"notice"})");
    EXPECT_THAT(documents().at(0).json, ::testing::HasSubstr(R"("service_status":"notice")"));
    set(R"({"service_error":"none"})");
    EXPECT_THAT(sent(), ElementsAre("status active"));
}

TEST_F(ServiceControl, LoadStartsTheServiceAnew) {
    enrolled();
    set(R"({"delays":{"first_status":10}})");
    ASSERT_TRUE(
        wrensim_load_scenario(R"({"device":{"enrolled":true,"enrollment":{"id":"new"}}})", nullptr, 0));
    EXPECT_THAT(sent(), ElementsAre("status init"));
    pass(400);
    EXPECT_THAT(documents(), ElementsAre(test::Received{"StatusNotification",
                                                        test::enrolledStatusText("new", test::startOfTime)}));
}

TEST_F(ServiceControl, LoadDropsWhatWasUnderWay) {
    set(R"({"enrolled":true,"delays":{"config_sync":10,"posture_report":10,"dataplane_reply":10}})");
    syncConfig("enrollment-1");
    reportPosture();
    replyDataplane("c", "");
    load("");
    pass(100);
    EXPECT_THAT(sent(), ElementsAre());
}

TEST_F(ServiceControl, CookieIsCutToItsBuffer) {
    load(R"("logins":{"enrollment":{"cookie":"12345678"}})");
    enroll();
    char value[5] = "xxxx";
    EXPECT_EQ(wrensim_login_cookie(wrensim_enrollment_login, nullptr, value, sizeof value), 8u);
    EXPECT_STREQ(value, "1234");
    EXPECT_EQ(wrensim_login_cookie(wrensim_enrollment_login, "other", value, sizeof value), 0u);
    EXPECT_STREQ(value, "");
}

TEST_F(ServiceControl, ManyThreadsMayTurnKnobsAndAskAndEnroll) {
    wrensim_set_pace(0);
    load(
        R"("device":{"dataplane_auth_requests":[{"context_id":"c"}]},"logins":{"enrollment":{"cookie":"ok"}},)"
        R"("delays":{"status_interval":1})");
    const auto often = [](auto work) {
        return std::thread([work] {
            for (int round = 0; round < 200; ++round) {
                work();
            }
        });
    };
    std::vector<std::thread> threads;
    threads.push_back(often([] { wrensim_set(R"({"posture":"unreachable"})", nullptr, 0); }));
    threads.push_back(often([] { wrensim_set(R"({"posture":"ok","service_error":"none"})", nullptr, 0); }));
    threads.push_back(often([] {
        std::string text(wrensim_state(nullptr, 0), ' ');
        wrensim_state(text.data(), text.size());
        cookie(wrensim_dataplane_login, nullptr);
        wrensim_advance_time(1);
    }));
    threads.push_back(often([] {
        const auto own = std::make_shared<test::Receiver>();
        const auto brief = makeApi();
        brief->Start(own);
    }));
    for (int round = 0; round < 50; ++round) {
        enroll();
        const std::string id = runningId();
        reply(id, "ok");
        unenroll(id);
        wrensim_set(R"({"service_error":"other"})", nullptr, 0);
        wrensim_load_scenario(R"({"logins":{"enrollment":{"cookie":"ok"}},"delays":{"status_interval":1}})",
                              nullptr, 0);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& line : sent()) {
        EXPECT_FALSE(line.empty());
    }
    wrensim_set_pace(100);
}

} // namespace
