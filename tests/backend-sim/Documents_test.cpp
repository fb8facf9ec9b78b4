#include "backend-sim/Documents.h"

#include "backend-sim/Fault.h"
#include "tests/backend-sim/Decoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

// The service's words and documents, against the plugin's decoders.

namespace {

/// Whether a table holds exactly the words that the plugin knows for an enumeration.
template <class Enumeration>
void expectSameWords(sim::Words words) {
    std::vector<std::string_view> known;
    for (const auto& word : enumerationWords<Enumeration>) {
        if (word.literal) {
            known.push_back(*word.literal);
        }
    }
    EXPECT_THAT(std::vector<std::string_view>(words.begin(), words.end()),
                ::testing::UnorderedElementsAreArray(known));
}

sim::Device enrolledDevice() {
    sim::Device device;
    device.isEnrolled = true;
    device.settle(1'700'000'000);
    return device;
}

StatusNotification_t statusOf(const sim::Device& device) {
    return test::decodedStatus(sim::statusDocument(device));
}

/// Sets each word of a table in turn, and expects to find in the decoded record what it stands for.
/// @param field of the device, as a reference; @param decoded from the record
template <class Enumeration>
void expectEveryWordDecoded(sim::Words words, auto field, auto decoded) {
    for (const sim::Word word : words) {
        sim::Device device = enrolledDevice();
        field(device) = word;
        EXPECT_EQ(nameOf(Enumeration(decoded(device))), nameOf(*valueOfLiteral<Enumeration>(word))) << word;
    }
}

TEST(Documents, WordsAreThoseThatThePluginKnows) {
    expectSameWords<ServiceStatus>(sim::words::serviceStatus);
    expectSameWords<InterceptorConnectivity>(sim::words::interceptor);
    expectSameWords<PostureConnectivity>(sim::words::posture);
    expectSameWords<HwKeyStoreAvailability>(sim::words::keyStore);
    expectSameWords<ServerConnectivity>(sim::words::server);
    expectSameWords<CertificateState>(sim::words::certificate);
    expectSameWords<CertificateRenewalStatus>(sim::words::certificateRenewal);
    expectSameWords<FingerprintStatus>(sim::words::fingerprint);
    expectSameWords<DataplaneAlertCategory>(sim::words::alertCategory);
    expectSameWords<DataplaneProto>(sim::words::protocol);
}

TEST(Documents, FailuresAreAllSubstatusesButNoneAndSuccess) {
    const auto withGoodOnes = [](sim::Words words) {
        std::vector<sim::Word> all(words.begin(), words.end());
        all.insert(all.end(), {"", "success"});
        return all;
    };
    expectSameWords<EnrollmentSubstatus>(withGoodOnes(sim::words::enrollmentFailure));
    expectSameWords<UnenrollmentSubstatus>(withGoodOnes(sim::words::unenrollmentFailure));
}

TEST(Documents, InitStatusIsDecoded) {
    const auto status = test::decodedStatus(sim::initStatusDocument());
    EXPECT_EQ(status.state, "init");
    EXPECT_TRUE(status.enrollments.empty());
    EXPECT_TRUE(status.enrollment_choices.empty());
}

TEST(Documents, ErrorStatusIsDecoded) {
    for (const sim::Word word : sim::words::serviceError) {
        sim::Device device;
        device.serviceError = word;
        const auto status = statusOf(device);
        EXPECT_EQ(status.state, word == "none" ? "active" : "error");
        EXPECT_EQ(status.substate, word == "none" ? "" : word);
    }
}

TEST(Documents, EveryWordOfTheStatusIsDecoded) {
    expectEveryWordDecoded<ServiceStatus>(
        sim::words::serviceStatus, [](sim::Device & device) -> auto& { return device.serviceStatus; },
        [](const sim::Device& device) { return statusOf(device).service_status; });
    expectEveryWordDecoded<InterceptorConnectivity>(
        sim::words::interceptor, [](sim::Device & device) -> auto& { return device.interceptor; },
        [](const sim::Device& device) { return statusOf(device).interceptor_connectivity; });
    expectEveryWordDecoded<PostureConnectivity>(
        sim::words::posture, [](sim::Device & device) -> auto& { return device.posture; },
        [](const sim::Device& device) { return statusOf(device).posture_connectivity; });
    expectEveryWordDecoded<HwKeyStoreAvailability>(
        sim::words::keyStore, [](sim::Device & device) -> auto& { return device.keyStore; },
        [](const sim::Device& device) { return statusOf(device).hw_key_store_availability; });
}

TEST(Documents, EveryWordOfTheEnrollmentIsDecoded) {
    const auto enrollmentOf = [](const sim::Device& device) { return statusOf(device).enrollments.at(0); };
    expectEveryWordDecoded<CertificateState>(
        sim::words::certificate, [](sim::Device & device) -> auto& { return device.certificate.state; },
        [&](const sim::Device& device) { return enrollmentOf(device).certificate_status.certificate_state; });
    expectEveryWordDecoded<CertificateRenewalStatus>(
        sim::words::certificateRenewal,
        [](sim::Device & device) -> auto& { return device.certificate.renewal; },
        [&](const sim::Device& device) {
            return enrollmentOf(device).certificate_status.certificate_renewal_status;
        });
    expectEveryWordDecoded<ServerConnectivity>(
        sim::words::server, [](sim::Device & device) -> auto& { return device.configSync.server; },
        [&](const sim::Device& device) {
            return enrollmentOf(device).config_sync_status.server_connectivity;
        });
    expectEveryWordDecoded<ServerConnectivity>(
        sim::words::server, [](sim::Device & device) -> auto& { return device.dataplaneServer; },
        [&](const sim::Device& device) { return enrollmentOf(device).dataplane_status.server_connectivity; });
    expectEveryWordDecoded<FingerprintStatus>(
        sim::words::fingerprint, [](sim::Device & device) -> auto& { return device.fingerprints[0].status; },
        [&](const sim::Device& device) {
            return enrollmentOf(device).network_status.fingerprints.at(0).status;
        });
}

TEST(Documents, EveryFieldOfTheEnrollmentIsDecoded) {
    sim::Device device = enrolledDevice();
    device.enrollment = {.id = "i",
                         .type = "t",
                         .label = "l",
                         .state = "s",
                         .substate = "u",
                         .time = 1,
                         .unenrollAllowed = false,
                         .reenrollAllowed = true};
    device.certificate.expires = 2;
    device.certificate.lastRenewalAttempt = 3;
    device.certificate.failedRenewals = 4;
    device.identity = {"a", "b", "c", "d", "e"};
    device.configSync = {.server = "ok", .intervalMinutes = 5, .lastSuccess = 6, .failures = 7};
    device.flows = {11, 12, 13, 14, 15, 16, 17, 18, 19, 4294967295};
    device.proxies = {{"p", "q"}, {"r", "s"}};
    constexpr QuillTimePoint second = 10'000'000;

    const Enrollment_t enrollment = statusOf(device).enrollments.at(0);
    EXPECT_EQ(enrollment.id, "i");
    EXPECT_EQ(enrollment.type, "t");
    EXPECT_EQ(enrollment.label, "l");
    EXPECT_EQ(enrollment.state, "s");
    EXPECT_EQ(enrollment.substate, "u");
    EXPECT_EQ(enrollment.enrollment_time, 1 * second);
    EXPECT_FALSE(enrollment.unenroll_allowed);
    EXPECT_TRUE(enrollment.reenroll_allowed);
    EXPECT_EQ(enrollment.certificate_status.certificate_expiration_time, 2 * second);
    EXPECT_EQ(enrollment.certificate_status.last_renewal_attempt_time, 3 * second);
    EXPECT_EQ(enrollment.certificate_status.failed_renewal_attempt_cnt, 4u);
    const CertificateUrns_t& urns = enrollment.certificate_status.certificate_urns;
    EXPECT_EQ(urns.org_id + urns.user_id + urns.plv_id + urns.quill_device_id + urns.user_name, "abcde");
    EXPECT_EQ(enrollment.config_sync_status.config_sync_interval_min, 5u);
    EXPECT_EQ(enrollment.config_sync_status.last_config_sync_success, 6 * second);
    EXPECT_EQ(enrollment.config_sync_status.fail_cnt_since_last_sync_success, 7u);
    const DataplaneStatus_t& dataplane = enrollment.dataplane_status;
    EXPECT_EQ(dataplane.flow_cnt_udp, 11u);
    EXPECT_EQ(dataplane.flow_cnt_tcp, 12u);
    EXPECT_EQ(dataplane.active_flow_cnt_udp, 13u);
    EXPECT_EQ(dataplane.active_flow_cnt_tcp, 14u);
    EXPECT_EQ(dataplane.allowed_flow_cnt_udp, 15u);
    EXPECT_EQ(dataplane.allowed_flow_cnt_tcp, 16u);
    EXPECT_EQ(dataplane.blocked_flow_cnt_udp, 17u);
    EXPECT_EQ(dataplane.blocked_flow_cnt_tcp, 18u);
    EXPECT_EQ(dataplane.authenticated_flow_cnt_udp, 19u);
    EXPECT_EQ(dataplane.authenticated_flow_cnt_tcp, 4294967295u);
    ASSERT_EQ(dataplane.proxy_configs.size(), 2u);
    EXPECT_EQ(dataplane.proxy_configs[1].label, "r");
    EXPECT_EQ(dataplane.proxy_configs[1].status, "s");
}

TEST(Documents, EveryFieldOfAChoiceIsDecoded) {
    sim::Device device;
    device.choices = {{.id = "i", .type = "t", .label = "l", .state = "s", .enrollAllowed = false},
                      {.id = "j", .type = "", .label = "", .state = ""}};
    const auto choices = statusOf(device).enrollment_choices;
    ASSERT_EQ(choices.size(), 2u);
    EXPECT_EQ(choices[0], (EnrollmentChoice_t{"s", "i", "t", "l", false}));
    EXPECT_EQ(choices[1], (EnrollmentChoice_t{"", "j", "", "", true}));
}

TEST(Documents, EveryWordOfTheDataplaneIsDecoded) {
    for (const sim::Word category : sim::words::alertCategory) {
        for (const sim::Word protocol : sim::words::protocol) {
            sim::Device device = enrolledDevice();
            device.dataplaneAlerts.resize(1);
            device.dataplaneAlerts[0].category = category;
            device.dataplaneAlerts[0].destinations.resize(2);
            device.dataplaneAlerts[0].destinations[1].protocol = protocol;
            device.dataplaneAuthRequests.resize(1);
            device.dataplaneAuthRequests[0].destination.protocol = protocol;
            const auto dataplane = test::decodedDataplane(sim::dataplaneDocument(device, {}));
            EXPECT_EQ(dataplane.dataplane_alerts.at(0).category,
                      valueOfLiteral<DataplaneAlertCategory>(category));
            EXPECT_EQ(dataplane.dataplane_alerts.at(0).destinations.at(1).proto,
                      valueOfLiteral<DataplaneProto>(protocol));
            EXPECT_EQ(dataplane.dataplane_auth_requests.at(0).destination.proto,
                      valueOfLiteral<DataplaneProto>(protocol));
        }
    }
}

TEST(Documents, EveryStepOfProgressIsDecoded) {
    const sim::EnrollmentSubject subject{"id", "context"};
    for (const char* status : {"started", "error", "complete"}) {
        for (const sim::Word word : sim::words::enrollmentFailure) {
            const auto progress = test::decodedEnrollmentStatus(sim::progressDocument(subject, status, word));
            EXPECT_EQ(progress.substatus, valueOfLiteral<EnrollmentSubstatus>(word));
            EXPECT_EQ(progress.enrollment_id, "id");
            EXPECT_EQ(progress.enrollment_context, "context");
        }
        for (const sim::Word word : sim::words::unenrollmentFailure) {
            EXPECT_EQ(test::decodedUnenrollmentStatus(sim::progressDocument(subject, status, word)).substatus,
                      valueOfLiteral<UnenrollmentSubstatus>(word));
        }
    }
}

TEST(Documents, StartUrlNamesItsLogin) {
    const struct {
        const char* base;
        const char* id;
        const char* url;
    } rows[] = {
        {"http://h/p", "enr-1", "http://h/p?login=enr-1"},
        {"http://h/p?a=b", "enr-1", "http://h/p?a=b&login=enr-1"},
        {"http://h/p", "Az09-._~", "http://h/p?login=Az09-._~"},
        {"http://h/p", "a b&c=d/\xc3\xa4", "http://h/p?login=a%20b%26c%3Dd%2F%C3%A4"},
    };
    for (const auto& row : rows) {
        const sim::Login login{row.base, "e", "c", ""};
        EXPECT_EQ(test::decodedAuthRequest(sim::enrollmentAuthRequestDocument({row.id, ""}, login)).start_url,
                  row.url);
        sim::Device device = enrolledDevice();
        device.dataplaneAuthRequests.resize(1);
        device.dataplaneAuthRequests[0].contextId = row.id;
        EXPECT_EQ(test::decodedDataplane(sim::dataplaneDocument(device, login))
                      .dataplane_auth_requests.at(0)
                      .start_url,
                  row.url);
    }
}

} // namespace
