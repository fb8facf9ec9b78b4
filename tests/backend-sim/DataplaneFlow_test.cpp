#include "tests/backend-sim/ServiceTest.h"

#include "tests/backend-sim/Decoding.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::Received;
using ::testing::ElementsAre;

constexpr const char* twoRequests =
    R"("device":{"enrolled":true,"dataplane_auth_requests":[{"context_id":"c 1","time":5,)"
    R"("destination":{"host":"h","port":1,"proto":"udp"}},{"context_id":"c2"}]})";

class DataplaneFlow : public test::ServiceTest {
protected:
    static std::string dataplaneCookie(const char* context) {
        return cookie(wrensim_dataplane_login, context);
    }
};

TEST_F(DataplaneFlow, RequestsAndAlertsAreToldAfterTheRealStatus) {
    load(R"("device":{"enrolled":true,"dataplane_alerts":[{"category":"posture_error","code":7,"time":5,)"
         R"("title":"t","short_message":"s","long_message":"l","tile_message":"i","toast_message":"o",)"
         R"("url":"u","url_label":"b","destinations":[{"host":"h","port":8,"proto":"icmp"}]}],)"
         R"("dataplane_auth_requests":[{"context_id":"c&1"}]})");
    const auto fresh = std::make_shared<test::Receiver>();
    const auto other = makeApi();
    ASSERT_EQ(other->Start(fresh), QuillApiResult::Success);
    wrensim_wait_idle();
    const auto all = fresh->all();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(test::shortened(all[0]), "status init");
    EXPECT_EQ(test::shortened(all[1]), "status active, enrolled enrollment-1");
    EXPECT_EQ(
        all[2],
        (Received{
            "DataplaneNotification",
            R"({"version":"1","dataplane_alerts":[{"category":"posture_error","code":7,"timestamp":5,)"
            R"("title":"t","short_message":"s","long_message":"l","tile_message":"i","toast_message":"o",)"
            R"("url":"u","url_label":"b","destinations":[{"host":"h","port":8,"proto":"icmp","timestamp":5}]}],)"
            R"("dataplane_auth_requests":[{"timestamp":1700000000,"context_id":"c&1",)"
            R"("start_url":"https://login.example.test/access?login=c%261",)"
            R"("end_url":"https://login.example.test/access/done","cookie_name":"authorization",)"
            R"("destination":{"host":"app.example.test","port":443,"proto":"tcp","timestamp":1700000000}}]})"}));
}

TEST_F(DataplaneFlow, RequestGoesWithTheRightCookie) {
    load(twoRequests);
    const std::string right = dataplaneCookie("c 1");
    EXPECT_EQ(right.size(), 32u);
    EXPECT_NE(right, dataplaneCookie("c2"));
    EXPECT_EQ(cookie(wrensim_dataplane_login, nullptr), dataplaneCookie("c2")) << "the latest";
    replyDataplane("c 1", right);
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 1 requests"));
    EXPECT_EQ(dataplaneCookie("c 1"), "");
    replyDataplane("c2", dataplaneCookie("c2"));
    EXPECT_THAT(documents(), ElementsAre(Received{
                                 "DataplaneNotification",
                                 R"({"version":"1","dataplane_alerts":[],"dataplane_auth_requests":[]})"}));
}

TEST_F(DataplaneFlow, RequestStaysWithAnyOtherCookie) {
    load(twoRequests);
    const std::string right = dataplaneCookie("c 1");
    for (const std::string& wrong : {std::string(), std::string("x"), dataplaneCookie("c2")}) {
        replyDataplane("c 1", wrong);
        EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 2 requests")) << wrong;
    }
    replyDataplane("other", right);
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 2 requests"));
    replyDataplane("c 1", right);
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 1 requests")) << "the login goes on meanwhile";
}

TEST_F(DataplaneFlow, RequestsOfOneContextGoTogether) {
    load(R"("device":{"enrolled":true,"dataplane_auth_requests":[{"context_id":"c"},{"context_id":"c"}]})");
    replyDataplane("c", dataplaneCookie("c"));
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 0 requests"));
}

TEST_F(DataplaneFlow, ScenarioMayFixTheCookie) {
    load(std::string(twoRequests) + R"(,"logins":{"dataplane":{"cookie":"tok"}})");
    EXPECT_EQ(dataplaneCookie("c2"), "tok");
    replyDataplane("c2", "tok");
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 1 requests"));
}

TEST_F(DataplaneFlow, AnswerTakesItsTime) {
    load(std::string(twoRequests) + R"(,"delays":{"dataplane_reply":20})");
    replyDataplane("c2", dataplaneCookie("c2"));
    pass(19);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 1 requests"));
}

TEST_F(DataplaneFlow, NothingIsToldWhileTheDeviceIsNotEnrolled) {
    load(R"("device":{"dataplane_alerts":[{}],"dataplane_auth_requests":[{"context_id":"c"}]})");
    EXPECT_EQ(dataplaneCookie("c"), "");
    replyDataplane("c", "x");
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 0 requests"));
    enroll();
    const std::string id = runningId();
    reply(id, enrollmentCookie(id));
    EXPECT_THAT(sent(), ElementsAre("enrollment " + id + " Started/None", "login " + id,
                                    "status active, enrolled " + id, "enrollment " + id + " Complete/Success",
                                    "dataplane 1 alerts, 1 requests"));
    EXPECT_NE(dataplaneCookie("c"), "");
}

TEST_F(DataplaneFlow, KnobsBringAndTakeRequestsAndAlerts) {
    load(R"("device":{"enrolled":true})");
    set(R"({"dataplane_auth_requests":[{"context_id":"a"}]})");
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 1 requests"));
    const std::string first = dataplaneCookie("a");
    set(R"({"dataplane_auth_requests":[{"context_id":"a"},{"context_id":"b"}],"dataplane_alerts":[{}]})");
    EXPECT_THAT(sent(), ElementsAre("dataplane 1 alerts, 2 requests"));
    EXPECT_EQ(dataplaneCookie("a"), first) << "a login that goes on keeps its cookie";
    set(R"({"dataplane_auth_requests":[]})");
    EXPECT_THAT(sent(), ElementsAre("dataplane 1 alerts, 0 requests"));
    EXPECT_EQ(dataplaneCookie("a"), "");
    set(R"({"dataplane_alerts":[]})");
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 0 requests"));
}

TEST_F(DataplaneFlow, FaultMayBringAnAlertWithTheAnswer) {
    load(std::string(twoRequests) +
         R"(,"faults":[{"when":"dataplane_reply","skip":1,"set":{"dataplane_alerts":[{"code":1}]}}])");
    replyDataplane("c2", "");
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 2 requests"));
    replyDataplane("c2", dataplaneCookie("c2"));
    EXPECT_THAT(sent(), ElementsAre("dataplane 1 alerts, 2 requests", "dataplane 1 alerts, 1 requests"));
}

TEST_F(DataplaneFlow, ServiceThatIsDownDoesNotAnswer) {
    load(twoRequests);
    set(R"({"service_error":"other"})");
    sent();
    replyDataplane("c2", dataplaneCookie("c2"));
    EXPECT_THAT(sent(), ElementsAre());
    set(R"({"service_error":"none"})");
    EXPECT_THAT(sent(),
                ElementsAre("status active, enrolled enrollment-1", "dataplane 0 alerts, 2 requests"));
}

TEST_F(DataplaneFlow, RestartWithoutRequestsTakesThemAway) {
    load(twoRequests);
    wrensim_load_scenario(R"({"delays":{"first_status":0}})", nullptr, 0);
    EXPECT_THAT(sent(), ElementsAre("status init", "status active", "dataplane 0 alerts, 0 requests"));
}

TEST_F(DataplaneFlow, RestartOpensEveryLoginAnew) {
    load(twoRequests);
    const std::string before = dataplaneCookie("c2");
    load(twoRequests);
    EXPECT_NE(dataplaneCookie("c2"), before);
    replyDataplane("c2", before);
    EXPECT_THAT(sent(), ElementsAre("dataplane 0 alerts, 2 requests"));
}

} // namespace
