#include "backend-sim/ScenarioReader.h"
#include "backend-sim/ScenarioWriter.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

using sim::readKnobs;
using sim::readScenario;

std::string complaintOf(const std::string& text, auto read) {
    try {
        read(text);
        return "no complaint";
    } catch (const sim::ScenarioError& error) {
        return error.what();
    }
}

std::string scenarioComplaint(const std::string& text) { return complaintOf(text, sim::readScenario); }
std::string knobsComplaint(const std::string& text) { return complaintOf(text, sim::readKnobs); }

/// The complaint about a device.
std::string deviceComplaint(const std::string& device) {
    return scenarioComplaint(R"({"device":)" + device + "}");
}
std::string faultComplaint(const std::string& fault) {
    return scenarioComplaint(R"({"faults":[)" + fault + "]}");
}

std::string textOf(const sim::Scenario& scenario) {
    return boost::json::serialize(sim::writeScenario(scenario));
}

struct Complaint {
    const char* text;
    const char* complaint;
};

TEST(ScenarioReader, EmptyScenarioIsTheUsualOne) {
    EXPECT_EQ(textOf(readScenario("{}")), textOf({}));
    EXPECT_EQ(textOf(readScenario(R"({"$schema":"x","device":{},"delays":{},"logins":{},"faults":[]})")),
              textOf({}));
}

TEST(ScenarioReader, UsualScenarioIsAHealthyDeviceThatIsNotEnrolled) {
    EXPECT_EQ(
        textOf({}),
        R"({"device":{"service_error":"none","service_status":"ok","interceptor":"ok","posture":"ok",)"
        R"("hw_key_store":"ok","choices":[{"id":"choice-1","type":"user","label":"Example Corp",)"
        R"("state":"available","enroll_allowed":true}],"enrolled":false,"enrollment":{"id":"enrollment-1",)"
        R"("type":"user","label":"Example Corp","state":"enrolled","substate":"","unenroll_allowed":true,)"
        R"("reenroll_allowed":true},"certificate":"ok","certificate_renewal":"ok",)"
        R"("certificate_lifetime_s":7776000,"certificate_failed_renewals":0,"identity":{"org_id":"org-1",)"
        R"("user_id":"user-1","plv_id":"plv-1","quill_device_id":"device-1","user_name":"Robin Example"},)"
        R"("config_sync_server":"ok","config_sync_interval_min":60,"config_sync_failures":0,)"
        R"("dataplane_server":"ok","flows":{"flow_cnt_udp":0,"flow_cnt_tcp":0,"active_flow_cnt_udp":0,)"
        R"("active_flow_cnt_tcp":0,"allowed_flow_cnt_udp":0,"allowed_flow_cnt_tcp":0,)"
        R"("blocked_flow_cnt_udp":0,"blocked_flow_cnt_tcp":0,"authenticated_flow_cnt_udp":0,)"
        R"("authenticated_flow_cnt_tcp":0},"traffic":{"flow_cnt_udp":0,"flow_cnt_tcp":0,)"
        R"("active_flow_cnt_udp":0,"active_flow_cnt_tcp":0,"allowed_flow_cnt_udp":0,)"
        R"("allowed_flow_cnt_tcp":0,"blocked_flow_cnt_udp":0,"blocked_flow_cnt_tcp":0,)"
        R"("authenticated_flow_cnt_udp":0,"authenticated_flow_cnt_tcp":0},)"
        R"("proxies":[{"label":"Example proxy","status":"active"}],)"
        R"("fingerprints":[{"label":"Office","status":"Matched"}],"dataplane_alerts":[],)"
        R"("dataplane_auth_requests":[]},"delays":{"first_status":400,"status_interval":0,)"
        R"("enrollment_started":0,"authentication_request":300,"login_failure":5000,"registration":1500,)"
        R"("cancellation":300,"unenrollment_started":0,"unenrollment":800,"config_sync":300,)"
        R"("posture_report":300,"dataplane_reply":300},"logins":{"enrollment":{)"
        R"("start_url":"https://login.example.test/enroll","end_url":"https://login.example.test/enroll/done",)"
        R"("cookie_name":"session","cookie":"","password":"wren"},"dataplane":{"start_url":"https://login.example.test/access",)"
        R"("end_url":"https://login.example.test/access/done","cookie_name":"authorization","cookie":"",)"
        R"("password":"wren"}},"faults":[]})");
}

TEST(ScenarioReader, TakesEveryField) {
    const std::string everything =
        R"({"device":{"service_error":"ipc_failure","service_status":"notice","interceptor":"disconnected",)"
        R"("posture":"unreachable","hw_key_store":"not_supported","choices":[{"id":"c","type":"t","label":"l",)"
        R"("state":"s","enroll_allowed":false},{"id":"d","type":"","label":"","state":"",)"
        R"("enroll_allowed":true}],"enrolled":true,"enrollment":{"id":"e","type":"t","label":"l","state":"s",)"
        R"("substate":"u","time":1,"unenroll_allowed":false,"reenroll_allowed":false},)"
        R"("certificate":"revoked","certificate_renewal":"waiting","certificate_expires":2,)"
        R"("certificate_lifetime_s":3,"certificate_last_renewal_attempt":4,"certificate_failed_renewals":5,)"
        R"("identity":{"org_id":"o","user_id":"u","plv_id":"p","quill_device_id":"d","user_name":"n"},)"
        R"("config_sync_server":"bad_response","config_sync_interval_min":6,"config_sync_last_success":0,)"
        R"("config_sync_failures":7,"dataplane_server":"bad_client_cert","flows":{"flow_cnt_udp":1,)"
        R"("flow_cnt_tcp":2,"active_flow_cnt_udp":3,"active_flow_cnt_tcp":4,"allowed_flow_cnt_udp":5,)"
        R"("allowed_flow_cnt_tcp":6,"blocked_flow_cnt_udp":7,"blocked_flow_cnt_tcp":8,)"
        R"("authenticated_flow_cnt_udp":9,"authenticated_flow_cnt_tcp":10},"traffic":{"flow_cnt_udp":11,)"
        R"("flow_cnt_tcp":12,"active_flow_cnt_udp":13,"active_flow_cnt_tcp":14,"allowed_flow_cnt_udp":15,)"
        R"("allowed_flow_cnt_tcp":16,"blocked_flow_cnt_udp":17,"blocked_flow_cnt_tcp":18,)"
        R"("authenticated_flow_cnt_udp":19,"authenticated_flow_cnt_tcp":4294967295},)"
        R"("proxies":[],"fingerprints":[{"label":"f","status":"Unmatched"}],"dataplane_alerts":[)"
        R"({"category":"posture_error","code":8,"time":253402300799,"title":"a","short_message":"b",)"
        R"("long_message":"c","tile_message":"d","toast_message":"e","url":"f","url_label":"g",)"
        R"("destinations":[{"host":"h","port":65535,"proto":"icmp"}]}],"dataplane_auth_requests":[)"
        R"({"context_id":"x","time":9,"destination":{"host":"h","port":0,"proto":"udp"}}]},)"
        R"("delays":{"first_status":1,"status_interval":2,"enrollment_started":3,"authentication_request":4,)"
        R"("login_failure":5,"registration":6,"cancellation":7,"unenrollment_started":8,"unenrollment":9,)"
        R"("config_sync":10,"posture_report":11,"dataplane_reply":12},"logins":{"enrollment":{"start_url":"a",)"
        R"("end_url":"b","cookie_name":"c","cookie":"d","password":"p"},"dataplane":{"start_url":"e","end_url":"f",)"
        R"("cookie_name":"g","cookie":"h","password":"q"}},"faults":[{"when":"enrollment_cookie","skip":1,"times":2,)"
        R"("fail":"server_communication_error","set":{"certificate":"rejected"}}]})";
    EXPECT_EQ(textOf(readScenario(everything)), everything);
}

TEST(ScenarioReader, WhatItDoesNotNameStaysUsual) {
    const sim::Scenario scenario = readScenario(R"({"device":{"enrollment":{"label":"Other"}}})");
    EXPECT_EQ(scenario.device.enrollment.label, "Other");
    EXPECT_EQ(scenario.device.enrollment.id, "enrollment-1");
}

TEST(ScenarioReader, NumbersMayBeWrittenAsFractionsWithoutOne) {
    EXPECT_EQ(readScenario(R"({"delays":{"registration":15.0e1}})").delays.registration, 150u);
}

TEST(ScenarioReader, TellsWhereATextIsNoJson) {
    const Complaint rows[] = {
        {"", "line 1, column 1: incomplete JSON"},
        {"{", "line 1, column 2: incomplete JSON"},
        {"nonsense", "line 1, column 1: syntax error"},
        {"{}x", "line 1, column 3: extra data"},
        {"{\n  \"device\": {},\n  oops\n}", "line 3, column 3: syntax error"},
        {"// comment\n{}", "line 1, column 1: syntax error"},
        {"{\"device\":\"\xff\"}", "line 1, column 12: syntax error"},
    };
    for (const Complaint& row : rows) {
        EXPECT_EQ(scenarioComplaint(row.text), row.complaint) << row.text;
        EXPECT_EQ(knobsComplaint(row.text), row.complaint) << row.text;
    }
    EXPECT_THAT(scenarioComplaint(std::string(100'000, '[')), ::testing::HasSubstr("too deep"));
}

TEST(ScenarioReader, RefusesWhatIsNoObject) {
    for (const char* text : {"null", "1", "true", "\"device\"", "[]", "[{}]"}) {
        EXPECT_EQ(scenarioComplaint(text), "/: must be an object") << text;
        EXPECT_EQ(knobsComplaint(text), "/: must be an object") << text;
    }
    EXPECT_EQ(deviceComplaint("null"), "/device: must be an object");
    EXPECT_EQ(deviceComplaint(R"({"identity":[]})"), "/device/identity: must be an object");
    EXPECT_EQ(deviceComplaint(R"({"choices":[{"id":"a"},7]})"), "/device/choices/1: must be an object");
}

TEST(ScenarioReader, NamesAnUnknownKey) {
    EXPECT_EQ(scenarioComplaint(R"({"devices":{}})"), "/devices: unknown key");
    EXPECT_EQ(scenarioComplaint(R"({"certificate":"ok"})"), "/certificate: unknown key");
    EXPECT_EQ(scenarioComplaint(R"({"":1})"), "/: unknown key");
    EXPECT_EQ(scenarioComplaint(R"({"a/b~c":1})"), "/a~1b~0c: unknown key");
    EXPECT_EQ(deviceComplaint(R"({"Certificate":"ok"})"), "/device/Certificate: unknown key");
    EXPECT_EQ(deviceComplaint(R"({"identity":{"name":"x"}})"), "/device/identity/name: unknown key");
    EXPECT_EQ(deviceComplaint(R"({"dataplane_alerts":[{"destinations":[{"ip":""}]}]})"),
              "/device/dataplane_alerts/0/destinations/0/ip: unknown key");
    EXPECT_EQ(faultComplaint(R"({"when":"start","set":{"delays":{}}})"), "/faults/0/set/delays: unknown key");
}

TEST(ScenarioReader, NamesAKeyThatComesTwice) {
    EXPECT_EQ(scenarioComplaint(R"({"device":{},"device":{}})"), "/device: comes twice");
    EXPECT_EQ(deviceComplaint(R"({"choices":[{"id":"a"},{"id":"b","label":"","id":"c"}]})"),
              "/device/choices/1/id: comes twice");
    EXPECT_EQ(deviceComplaint(R"({"proxies":[],"flows":{"flow_cnt_tcp":1,"flow_cnt_tcp":1}})"),
              "/device/flows/flow_cnt_tcp: comes twice");
    EXPECT_EQ(deviceComplaint(R"({"identity":{"org_id":"a"},"enrollment":{"id":"a"}})"), "no complaint");
}

TEST(ScenarioReader, NamesAWordThatIsNotInTheTable) {
    EXPECT_EQ(
        deviceComplaint(R"({"certificate":"expird"})"),
        "/device/certificate: 'expird' is none of ok, expired, revoked, rejected, internal_error, unknown");
    EXPECT_EQ(deviceComplaint(R"({"fingerprints":[{"status":"matched"}]})"),
              "/device/fingerprints/0/status: 'matched' is none of Matched, Unmatched, Unknown");
    EXPECT_EQ(deviceComplaint(R"({"service_status":""})"),
              "/device/service_status: '' is none of ok, notice, pending, unknown");
}

TEST(ScenarioReader, NamesAFieldOfTheWrongKind) {
    const Complaint rows[] = {
        {R"({"enrolled":1})", "/device/enrolled: must be true or false"},
        {R"({"enrolled":null})", "/device/enrolled: must be true or false"},
        {R"({"certificate":1})", "/device/certificate: must be a text"},
        {R"({"enrollment":{"label":false}})", "/device/enrollment/label: must be a text"},
        {R"({"enrollment":{"id":[]}})", "/device/enrollment/id: must be a text"},
        {R"({"choices":{}})", "/device/choices: must be a list"},
        {R"({"config_sync_failures":"1"})",
         "/device/config_sync_failures: must be a whole number from 0 to 4294967295"},
        {R"({"config_sync_failures":-1})",
         "/device/config_sync_failures: must be a whole number from 0 to 4294967295"},
        {R"({"config_sync_failures":4294967296})",
         "/device/config_sync_failures: must be a whole number from 0 to 4294967295"},
        {R"({"config_sync_failures":0.5})",
         "/device/config_sync_failures: must be a whole number from 0 to 4294967295"},
        {R"({"certificate_expires":-1})",
         "/device/certificate_expires: must be a whole number from 0 to 253402300799"},
        {R"({"certificate_expires":253402300800})",
         "/device/certificate_expires: must be a whole number from 0 to 253402300799"},
        {R"({"dataplane_auth_requests":[{"context_id":"a","destination":{"port":65536}}]})",
         "/device/dataplane_auth_requests/0/destination/port: must be a whole number from 0 to 65535"},
    };
    for (const Complaint& row : rows) {
        EXPECT_EQ(deviceComplaint(row.text), row.complaint);
    }
    EXPECT_EQ(scenarioComplaint(R"({"$schema":1})"), "/$schema: must be a text");
    EXPECT_EQ(scenarioComplaint(R"({"logins":{"enrollment":{"cookie_name":""}}})"),
              "/logins/enrollment/cookie_name: must not be empty");
    EXPECT_EQ(scenarioComplaint(R"({"delays":{"registration":-1}})"),
              "/delays/registration: must be a whole number from 0 to 4294967295");
}

TEST(ScenarioReader, NamesAKeyThatIsMissing) {
    EXPECT_EQ(deviceComplaint(R"({"choices":[{}]})"), "/device/choices/0/id: is missing");
    EXPECT_EQ(deviceComplaint(R"({"dataplane_auth_requests":[{}]})"),
              "/device/dataplane_auth_requests/0/context_id: is missing");
    EXPECT_EQ(faultComplaint("{}"), "/faults/0/when: is missing");
}

TEST(ScenarioReader, FaultMustDoSomethingThatItsMomentKnows) {
    EXPECT_EQ(faultComplaint(R"({"when":"start"})"), "/faults/0: has neither 'fail' nor 'set'");
    EXPECT_EQ(faultComplaint(R"({"when":"start","set":{}})"), "/faults/0/set: must not be empty");
    EXPECT_EQ(faultComplaint(R"({"when":"start","set":7})"), "/faults/0/set: must be an object");
    EXPECT_EQ(
        faultComplaint(R"({"when":"start","set":{"posture":"bad"}})"),
        "/faults/0/set/posture: 'bad' is none of ok, unreachable, bad_response, internal_error, unknown");
    EXPECT_EQ(faultComplaint(R"({"when":"sometime","fail":"cancelled"})"),
              "/faults/0/when: 'sometime' is none of start, enrollment_request, enrollment_started, "
              "enrollment_login, enrollment_cookie, enrollment_cancel, enrolled, unenrollment_started, "
              "unenrolled, config_sync, posture_report, dataplane_reply");
    EXPECT_EQ(faultComplaint(R"({"fail":"success","when":"enrollment_cookie"})"),
              "/faults/0/fail: 'success' is none of cancelled, invalid_choice_id, invalid_enrollment_id, "
              "internal_error, initialization_error, user_authentication_error, device_registration_error, "
              "posture_registration_error, certificate_enrollment_error, server_communication_error, "
              "server_certificate_error, posture_no_hardware_security_error");
    EXPECT_EQ(faultComplaint(R"({"when":"unenrollment_started","fail":"cancelled"})"),
              "/faults/0/fail: 'cancelled' is none of invalid_enrollment_id, internal_error");
    for (const char* when :
         {"start", "enrolled", "unenrolled", "config_sync", "posture_report", "dataplane_reply"}) {
        EXPECT_EQ(faultComplaint(R"({"when":")" + std::string(when) + R"(","fail":"internal_error"})"),
                  "/faults/0/fail: nothing can fail at '" + std::string(when) + "'");
    }
    EXPECT_EQ(faultComplaint(R"({"when":"start","times":0,"set":{"posture":"ok"}})"),
              "/faults/0/times: must be a whole number from 1 to 4294967295");
}

TEST(ScenarioReader, KnobsAreAnyPartOfAScenarioAndTheDeviceWithoutItsName) {
    for (const char* text : {"{}", R"({"certificate":"revoked"})", R"({"device":{"certificate":"revoked"}})",
                             R"({"delays":{"registration":0},"faults":[],"logins":{},"posture":"ok"})"}) {
        EXPECT_EQ(knobsComplaint(text), "no complaint") << text;
    }
    EXPECT_EQ(knobsComplaint(R"({"certificate":"expird"})"),
              "/certificate: 'expird' is none of ok, expired, revoked, rejected, internal_error, unknown");
    EXPECT_EQ(knobsComplaint(R"({"device":{"enrolled":0}})"), "/device/enrolled: must be true or false");
    EXPECT_EQ(knobsComplaint(R"({"registration":0})"), "/registration: unknown key");
    EXPECT_EQ(knobsComplaint(R"({"$schema":""})"), "/$schema: unknown key");
}

TEST(ScenarioReader, KnobsChangeWhatTheyNameAlone) {
    sim::Scenario scenario;
    scenario.device.enrollment.id = "kept";
    sim::setKnobs(
        readKnobs(
            R"({"enrollment":{"label":"New"},"delays":{"registration":7},)"
            R"("choices":[{"id":"a"},{"id":"b"}],"faults":[{"when":"start","set":{"enrolled":true}}]})"),
        scenario);
    EXPECT_EQ(scenario.device.enrollment.id, "kept");
    EXPECT_EQ(scenario.device.enrollment.label, "New");
    EXPECT_EQ(scenario.delays.registration, 7u);
    EXPECT_EQ(scenario.delays.cancellation, 300u);
    ASSERT_EQ(scenario.device.choices.size(), 2u) << "a list takes the place of the list that was there";
    EXPECT_EQ(scenario.device.choices[1].label, "Example Corp");
    EXPECT_EQ(scenario.faults.size(), 1u);
}

TEST(ScenarioReader, EveryWordOfEveryTableIsTaken) {
    struct Table {
        const char* key;
        sim::Words words;
    };
    const Table tables[] = {
        {"service_error", sim::words::serviceError},
        {"service_status", sim::words::serviceStatus},
        {"interceptor", sim::words::interceptor},
        {"posture", sim::words::posture},
        {"hw_key_store", sim::words::keyStore},
        {"certificate", sim::words::certificate},
        {"certificate_renewal", sim::words::certificateRenewal},
        {"config_sync_server", sim::words::server},
        {"dataplane_server", sim::words::server},
    };
    for (const Table& table : tables) {
        for (const sim::Word word : table.words) {
            const std::string knob = "{\"" + std::string(table.key) + "\":\"" + std::string(word) + "\"}";
            EXPECT_EQ(knobsComplaint(knob), "no complaint") << knob;
        }
    }
}

TEST(ScenarioReader, SampleScenariosAreTaken) {
    std::size_t samples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(WREN_SOURCE_DIR "/backend-sim/scenarios")) {
        std::stringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        EXPECT_EQ(scenarioComplaint(text.str()), "no complaint") << entry.path();
        if (entry.path().filename() == "default.json") {
            EXPECT_EQ(textOf(readScenario(text.str())), textOf({}));
        }
        ++samples;
    }
    EXPECT_EQ(samples, 3u);
}

} // namespace
