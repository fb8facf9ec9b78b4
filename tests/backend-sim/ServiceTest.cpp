#include "tests/backend-sim/ServiceTest.h"

#include "tests/backend-sim/Decoding.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

namespace test {
namespace {

namespace json = boost::json;

constexpr std::string_view noDelays =
    R"("first_status":0,"status_interval":0,"enrollment_started":0,"authentication_request":0,)"
    R"("login_failure":0,"registration":0,"cancellation":0,"unenrollment_started":0,"unenrollment":0,)"
    R"("config_sync":0,"posture_report":0,"dataplane_reply":0)";

template <class Request>
void expectTaken(const std::shared_ptr<IQuillApi>& api, Request request, const json::object& document) {
    EXPECT_EQ(((*api).*request)(json::serialize(document).c_str()), QuillApiResult::Success);
    wrensim_wait_idle();
}

std::string progress(const auto& record, const char* kind) {
    return std::string(kind) + " " + record.enrollment_id + " " + std::string(nameOf(record.status)) + "/" +
           std::string(nameOf(record.substatus));
}

std::string shortenedStatus(const StatusNotification_t& status) {
    std::string text = "status " + status.state;
    if (!status.substate.empty()) {
        text += " " + status.substate;
    }
    if (!status.enrollments.empty()) {
        text += ", enrolled " + status.enrollments.front().id;
    }
    return text;
}

} // namespace

std::string notEnrolledStatusText() {
    return R"({"version":"1","state":"active","substate":"","interceptor_connectivity":"ok",)"
           R"("posture_connectivity":"ok","hw_key_store_availability":"ok","service_status":"ok",)"
           R"("enrollment_choices":[{"state":"available","id":"choice-1","type":"user",)"
           R"("label":"Example Corp","enroll_allowed":true}],"enrollments":[]})";
}

std::string enrolledStatusText(const std::string& id, std::int64_t since) {
    const std::string expires = std::to_string(since + 7'776'000);
    const std::string time = std::to_string(since);
    return R"({"version":"1","state":"active","substate":"","interceptor_connectivity":"ok",)"
           R"("posture_connectivity":"ok","hw_key_store_availability":"ok","service_status":"ok",)"
           R"("enrollment_choices":[],"enrollments":[{"state":"enrolled","substate":"","id":")" +
           id + R"(","type":"user","label":"Example Corp","enrollment_time":)" + time +
           R"(,"unenroll_allowed":true,"reenroll_allowed":true,"config_sync_status":{)"
           R"("config_sync_interval_min":60,"last_config_sync_success":)" +
           time +
           R"(,"fail_cnt_since_last_sync_success":0,"server_connectivity":"ok"},"certificate_status":{)"
           R"("certificate_expiration_time":)" +
           expires +
           R"(,"last_renewal_attempt_time":0,"failed_renewal_attempt_cnt":0,"certificate_state":"ok",)"
           R"("certificate_renewal_status":"ok","certificate_urns":{"org_id":"org-1","user_id":"user-1",)"
           R"("plv_id":"plv-1","quill_device_id":"device-1","user_name":"Robin Example"}},)"
           R"("dataplane_status":{"flow_cnt_udp":0,"flow_cnt_tcp":0,"active_flow_cnt_udp":0,)"
           R"("active_flow_cnt_tcp":0,"allowed_flow_cnt_udp":0,"allowed_flow_cnt_tcp":0,)"
           R"("blocked_flow_cnt_udp":0,"blocked_flow_cnt_tcp":0,"authenticated_flow_cnt_udp":0,)"
           R"("authenticated_flow_cnt_tcp":0,"server_connectivity":"ok","proxy_configs":[{)"
           R"("label":"Example proxy","status":"active"}]},"network_status":{"fingerprints":[{)"
           R"("label":"Office","status":"Matched"}]}}]})";
}

std::string shortened(const Received& document) {
    if (document.operation == "StatusNotification") {
        return shortenedStatus(decodedStatus(document.json));
    }
    if (document.operation == "EnrollmentStatusNotification") {
        return progress(decodedEnrollmentStatus(document.json), "enrollment");
    }
    if (document.operation == "UnenrollmentStatusNotification") {
        return progress(decodedUnenrollmentStatus(document.json), "unenrollment");
    }
    if (document.operation == "EnrollmentAuthRequest") {
        return "login " + decodedAuthRequest(document.json).enrollment_id;
    }
    const DataplaneNotification_t dataplane = decodedDataplane(document.json);
    return "dataplane " + std::to_string(dataplane.dataplane_alerts.size()) + " alerts, " +
           std::to_string(dataplane.dataplane_auth_requests.size()) + " requests";
}

ServiceTest::ServiceTest() {
    wrensim_hold_time(startOfTime);
    load("");
    wrensim_set_quiet(false);
    api = startApi();
    sent();
}

ServiceTest::~ServiceTest() {
    api.reset();
    wrensim_set_quiet(true);
    wrensim_load_scenario("{}", nullptr, 0);
    wrensim_wait_idle();
    wrensim_release_time();
    wrensim_forget_receivers();
}

void ServiceTest::load(const std::string& scenario) {
    auto document = json::parse("{" + scenario + "}").as_object();
    auto delays = json::parse("{" + std::string(noDelays) + "}").as_object();
    if (const json::value* told = document.if_contains("delays")) {
        for (const auto& delay : told->as_object()) {
            delays[delay.key()] = delay.value();
        }
    }
    document["delays"] = delays;
    std::string error(200, ' ');
    EXPECT_TRUE(wrensim_load_scenario(json::serialize(document).c_str(), error.data(), error.size()))
        << error;
    sent();
}

void ServiceTest::set(const std::string& knobs) {
    std::string error(200, ' ');
    EXPECT_TRUE(wrensim_set(knobs.c_str(), error.data(), error.size())) << error;
    wrensim_wait_idle();
}

void ServiceTest::pass(std::uint32_t milliseconds) {
    wrensim_advance_time(milliseconds);
    wrensim_wait_idle();
}

Lines ServiceTest::sent() {
    Lines lines;
    for (const Received& document : documents()) {
        lines.push_back(shortened(document));
    }
    return lines;
}

std::vector<Received> ServiceTest::documents() {
    wrensim_wait_idle();
    const auto all = receiver->all();
    std::vector<Received> news(all.begin() + static_cast<std::ptrdiff_t>(seen), all.end());
    seen = all.size();
    return news;
}

void ServiceTest::enroll(const std::string& choice) {
    expectTaken(api, &IQuillApi::InitiateEnrollment,
                {{"version", "1"}, {"enrollment_choice_id", choice}, {"enrollment_context", "ctx"}});
}

void ServiceTest::reEnroll(const std::string& id) {
    expectTaken(api, &IQuillApi::InitiateReEnrollment,
                {{"version", "1"}, {"enrollment_id", id}, {"enrollment_context", "ctx"}});
}

void ServiceTest::reply(const std::string& id, const std::string& cookie) {
    expectTaken(api, &IQuillApi::EnrollmentAuthReply,
                {{"version", "1"}, {"enrollment_id", id}, {"enrollment_cookie", cookie}});
}

void ServiceTest::cancel(const std::string& id) {
    expectTaken(api, &IQuillApi::CancelEnrollment, {{"version", "1"}, {"enrollment_id", id}});
}

void ServiceTest::unenroll(const std::string& id) {
    expectTaken(api, &IQuillApi::InitiateUnenrollment,
                {{"version", "1"}, {"enrollment_id", id}, {"enrollment_context", "ctx"}});
}

void ServiceTest::syncConfig(const std::string& id) {
    expectTaken(api, &IQuillApi::PerformConfigSync, {{"version", "1"}, {"enrollment_id", id}});
}

void ServiceTest::reportPosture() { expectTaken(api, &IQuillApi::TriggerPostureReports, {{"version", "1"}}); }

void ServiceTest::replyDataplane(const std::string& context, const std::string& cookie) {
    expectTaken(api, &IQuillApi::DataplaneAuthReply,
                {{"version", "1"}, {"context_id", context}, {"authorization_cookie", cookie}});
}

std::string ServiceTest::enrolled() {
    enroll();
    std::string id = runningId();
    reply(id, enrollmentCookie(id));
    EXPECT_FALSE(sent().empty());
    return id;
}

std::string ServiceTest::atLogin() {
    enroll();
    sent();
    return runningId();
}

std::string ServiceTest::runningId() {
    const json::value all = state();
    const json::value& enrollment = all.at("enrollment");
    return enrollment.is_null() ? "" : enrollment.at("enrollment_id").as_string().c_str();
}

std::string ServiceTest::stage() { return state().at("enrollment").at("stage").as_string().c_str(); }

void ServiceTest::setFault(const std::string& when, const std::string& fail) {
    set(R"({"faults":[{"when":")" + when + R"(","fail":")" + fail + "\"}]}");
}

std::string ServiceTest::cookie(WrenSimLogin login, const char* id) {
    std::string value(wrensim_login_cookie(login, id, nullptr, 0) + 1, ' ');
    wrensim_login_cookie(login, id, value.data(), value.size());
    value.pop_back();
    return value;
}

json::value ServiceTest::state() {
    wrensim_wait_idle();
    // Other threads of a test may change the service meanwhile: the text may be longer than it was when
    // asked.
    std::string text;
    std::size_t length = wrensim_state(nullptr, 0);
    while (length >= text.size()) {
        text.resize(length + 1);
        length = wrensim_state(text.data(), text.size());
    }
    text.resize(length);
    return json::parse(text);
}

json::object ServiceTest::lastEnrollment() {
    std::string latest;
    for (const Received& document : receiver->all()) {
        if (document.operation == "StatusNotification") {
            latest = document.json;
        }
    }
    const json::value status = json::parse(latest);
    const json::array& enrollments = status.at("enrollments").as_array();
    EXPECT_EQ(enrollments.size(), 1u) << latest;
    return enrollments.empty() ? json::object() : enrollments.front().as_object();
}

} // namespace test
