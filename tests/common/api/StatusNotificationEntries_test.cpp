#include "common/api/QuillApiDefsUtil.h"
#include "tests/common/api/DecoderFaults.h"
#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/string.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace {

namespace json = boost::json;
using test::enrolledStatusDocument;
using test::notEnrolledStatusDocument;
using test::throwsBadParameter;
using test::throwsInvalidArgument;
using test::throwsNotExact;
using test::throwsNotNumber;
using test::throwsOutOfRange;
using test::with;
using test::without;

Enrollment_t firstEnrollment(const json::value& document) {
    std::error_code error;
    StatusNotification_t status = StatusNotificationFromJson(document, error);
    EXPECT_FALSE(error) << error.message();
    return status.enrollments.at(0);
}

auto decodingStatus(json::value document) {
    return test::decoding(StatusNotificationFromJson, std::move(document));
}

std::string enrollmentPlace(std::string_view place) { return "/enrollments/0" + std::string(place); }

json::value enrolledWith(std::string_view place, json::value content) {
    return with(enrolledStatusDocument(), enrollmentPlace(place), std::move(content));
}

json::value enrolledWithout(std::string_view place) {
    return without(enrolledStatusDocument(), enrollmentPlace(place));
}

// Kinds and keys

TEST(StatusNotificationEntries, ListEntriesMustBeObjects) {
    EXPECT_THAT(decodingStatus(with(notEnrolledStatusDocument(), "/enrollment_choices/0", "choice")),
                throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingStatus(enrolledWith("", json::array{})), throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingStatus(enrolledWith("/dataplane_status/proxy_configs/0", 1)),
                throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingStatus(enrolledWith("/network_status/fingerprints/0", nullptr)),
                throwsInvalidArgument("not an object"));
}

TEST(StatusNotificationEntries, NestedValuesMustBeObjects) {
    for (const char* place : {"/config_sync_status", "/dataplane_status", "/certificate_status",
                              "/network_status", "/certificate_status/certificate_urns"}) {
        EXPECT_THAT(decodingStatus(enrolledWith(place, "text")), throwsInvalidArgument("not an object"))
            << place;
    }
}

TEST(StatusNotificationEntries, NestedTextsMustBeTexts) {
    for (const char* place :
         {"/state", "/substate", "/id", "/type", "/label", "/config_sync_status/server_connectivity",
          "/certificate_status/certificate_state", "/certificate_status/certificate_renewal_status",
          "/certificate_status/certificate_urns/org_id", "/certificate_status/certificate_urns/user_id",
          "/certificate_status/certificate_urns/plv_id",
          "/certificate_status/certificate_urns/quill_device_id",
          "/certificate_status/certificate_urns/user_name", "/dataplane_status/server_connectivity",
          "/dataplane_status/proxy_configs/0/label", "/dataplane_status/proxy_configs/0/status",
          "/network_status/fingerprints/0/label", "/network_status/fingerprints/0/status"}) {
        EXPECT_THAT(decodingStatus(enrolledWith(place, nullptr)), throwsInvalidArgument("not a string"))
            << place;
    }
    for (const char* key : {"state", "id", "type", "label"}) {
        EXPECT_THAT(
            decodingStatus(with(notEnrolledStatusDocument(), "/enrollment_choices/0/" + std::string(key), 1)),
            throwsInvalidArgument("not a string"))
            << key;
    }
}

TEST(StatusNotificationEntries, FlagsMustBeBools) {
    EXPECT_THAT(
        decodingStatus(with(notEnrolledStatusDocument(), "/enrollment_choices/0/enroll_allowed", "true")),
        throwsInvalidArgument("bool required"));
    EXPECT_THAT(decodingStatus(enrolledWith("/unenroll_allowed", 1)), throwsInvalidArgument("bool required"));
    EXPECT_THAT(decodingStatus(enrolledWith("/reenroll_allowed", nullptr)),
                throwsInvalidArgument("bool required"));
}

TEST(StatusNotificationEntries, NestedKeysAreMandatory) {
    EXPECT_THAT(decodingStatus(enrolledWith("/config_sync_status", json::object{})), throwsOutOfRange());
    EXPECT_THAT(decodingStatus(enrolledWith("/dataplane_status", json::object{})), throwsOutOfRange());
    EXPECT_THAT(decodingStatus(enrolledWith("/certificate_status", json::object{})), throwsOutOfRange());
    EXPECT_THAT(decodingStatus(enrolledWith("/network_status/fingerprints/0", json::object{})),
                throwsOutOfRange());
    for (const char* place : {
             "/config_sync_status/config_sync_interval_min",
             "/config_sync_status/last_config_sync_success",
             "/config_sync_status/fail_cnt_since_last_sync_success",
             "/config_sync_status/server_connectivity",
             "/certificate_status/certificate_expiration_time",
             "/certificate_status/last_renewal_attempt_time",
             "/certificate_status/failed_renewal_attempt_cnt",
             "/certificate_status/certificate_state",
             "/certificate_status/certificate_renewal_status",
             "/certificate_status/certificate_urns",
             "/certificate_status/certificate_urns/org_id",
             "/certificate_status/certificate_urns/user_id",
             "/certificate_status/certificate_urns/plv_id",
             "/certificate_status/certificate_urns/quill_device_id",
             "/certificate_status/certificate_urns/user_name",
             "/dataplane_status/flow_cnt_udp",
             "/dataplane_status/flow_cnt_tcp",
             "/dataplane_status/active_flow_cnt_udp",
             "/dataplane_status/active_flow_cnt_tcp",
             "/dataplane_status/allowed_flow_cnt_udp",
             "/dataplane_status/allowed_flow_cnt_tcp",
             "/dataplane_status/blocked_flow_cnt_udp",
             "/dataplane_status/blocked_flow_cnt_tcp",
             "/dataplane_status/authenticated_flow_cnt_udp",
             "/dataplane_status/authenticated_flow_cnt_tcp",
             "/dataplane_status/server_connectivity",
             "/dataplane_status/proxy_configs",
             "/network_status/fingerprints/0/label",
             "/network_status/fingerprints/0/status",
         }) {
        EXPECT_THAT(decodingStatus(enrolledWithout(place)), throwsOutOfRange()) << place;
    }
}

TEST(StatusNotificationEntries, NestedRecordsThatReportTheirFailureThrowItsCode) {
    EXPECT_THAT(decodingStatus(enrolledWith("/network_status", json::object{})), throwsBadParameter());
    EXPECT_THAT(decodingStatus(enrolledWith("/network_status/fingerprints", 1)), throwsBadParameter());
    EXPECT_THAT(decodingStatus(enrolledWith("/dataplane_status/proxy_configs", json::object{})),
                throwsBadParameter());
    EXPECT_THAT(decodingStatus(enrolledWith("/dataplane_status/proxy_configs/0", json::object{})),
                throwsBadParameter());
    EXPECT_THAT(decodingStatus(enrolledWithout("/dataplane_status/proxy_configs/0/label")),
                throwsBadParameter());
    EXPECT_THAT(decodingStatus(enrolledWithout("/dataplane_status/proxy_configs/0/status")),
                throwsBadParameter());
}

TEST(StatusNotificationEntries, NestedObjectsAreReadInTheirOwnOrder) {
    // Config sync, dataplane, certificate, network: each fault hides those behind it.
    auto document = enrolledWith("/network_status", json::object{});
    EXPECT_THAT(decodingStatus(document), throwsBadParameter());
    document = with(document, enrollmentPlace("/certificate_status"), 1);
    EXPECT_THAT(decodingStatus(document), throwsInvalidArgument("not an object"));
    document = with(document, enrollmentPlace("/dataplane_status"), json::object{});
    EXPECT_THAT(decodingStatus(document), throwsOutOfRange());
    document = with(document, enrollmentPlace("/config_sync_status/config_sync_interval_min"), 1.5);
    EXPECT_THAT(decodingStatus(document), throwsNotExact());
    document = with(document, enrollmentPlace("/reenroll_allowed"), 1);
    EXPECT_THAT(decodingStatus(document), throwsInvalidArgument("bool required"));
}

TEST(StatusNotificationEntries, UnlistedFingerprintStatusIsAFailure) {
    for (const char* literal : {"matched", "", "Perhaps"}) {
        EXPECT_THAT(decodingStatus(enrolledWith("/network_status/fingerprints/0/status", literal)),
                    testing::ThrowsMessage<std::bad_optional_access>(std::bad_optional_access().what()))
            << literal;
    }
    EXPECT_THAT(
        decodingStatus(enrolledWith("/network_status/fingerprints/0/status", json::string("Matched\0", 8))),
        testing::Throws<std::bad_optional_access>());
}

TEST(StatusNotificationEntries, ReadsEveryFingerprintStatus) {
    const auto read = [](const char* literal) {
        return firstEnrollment(enrolledWith("/network_status/fingerprints/0/status", literal))
            .network_status.fingerprints[0]
            .status;
    };
    EXPECT_EQ(read("Unknown"), FingerprintStatus::Unknown);
    EXPECT_EQ(read("Matched"), FingerprintStatus::Matched);
    EXPECT_EQ(read("Unmatched"), FingerprintStatus::Unmatched);
}

TEST(StatusNotificationEntries, UnlistedNestedLiteralsDecodeToUnknown) {
    auto document = enrolledWith("/config_sync_status/server_connectivity", "fine");
    document = with(document, enrollmentPlace("/dataplane_status/server_connectivity"), "OK");
    document = with(document, enrollmentPlace("/certificate_status/certificate_state"), "stolen");
    document = with(document, enrollmentPlace("/certificate_status/certificate_renewal_status"), "");
    const Enrollment_t enrollment = firstEnrollment(document);
    EXPECT_EQ(enrollment.config_sync_status.server_connectivity, ServerConnectivity::Unknown);
    EXPECT_EQ(enrollment.dataplane_status.server_connectivity, ServerConnectivity::Unknown);
    EXPECT_EQ(enrollment.certificate_status.certificate_state, CertificateState::Unknown);
    EXPECT_EQ(enrollment.certificate_status.certificate_renewal_status, CertificateRenewalStatus::Unknown);
}

// Numbers

ConfigSyncStatus_t decodedConfigSync(std::string_view key, json::value content) {
    return firstEnrollment(enrolledWith("/config_sync_status/" + std::string(key), std::move(content)))
        .config_sync_status;
}

TEST(StatusNotificationEntries, CountersSpanThirtyTwoBits) {
    EXPECT_EQ(decodedConfigSync("config_sync_interval_min", 0).config_sync_interval_min, 0u);
    EXPECT_EQ(decodedConfigSync("config_sync_interval_min", 4294967295u).config_sync_interval_min,
              4294967295u);
    EXPECT_EQ(decodedConfigSync("config_sync_interval_min", 4294967295.0).config_sync_interval_min,
              4294967295u);
}

TEST(StatusNotificationEntries, UnfitNumbersThrowTheConversionsCode) {
    for (const json::value& number : {json::value(-1), json::value(4294967296), json::value(1.5),
                                      json::value(4294967296.0), json::value(1e300), json::value(-1.0)}) {
        EXPECT_THAT(decodingStatus(enrolledWith("/config_sync_status/config_sync_interval_min", number)),
                    throwsNotExact())
            << number;
    }
    for (const json::value& other : {json::value("7"), json::value(nullptr), json::value(true)}) {
        EXPECT_THAT(decodingStatus(enrolledWith("/config_sync_status/config_sync_interval_min", other)),
                    throwsNotNumber())
            << other;
    }
}

TEST(StatusNotificationEntries, TimesAreWholeSeconds) {
    const std::string_view key = "last_config_sync_success";
    EXPECT_EQ(decodedConfigSync(key, 1700000000).last_config_sync_success, 17000000000000000);
    EXPECT_EQ(decodedConfigSync(key, 1700000000.0).last_config_sync_success, 17000000000000000);
    EXPECT_THAT(decodingStatus(enrolledWith("/config_sync_status/last_config_sync_success", 1.5)),
                throwsNotExact());
    EXPECT_THAT(decodingStatus(enrolledWith("/config_sync_status/last_config_sync_success", "1700000000")),
                throwsNotNumber());
}

TEST(StatusNotificationEntries, OnlyTheEnrollmentTimeMayBeNegative) {
    EXPECT_EQ(firstEnrollment(enrolledWith("/enrollment_time", -5)).enrollment_time, -50000000);
    for (const char* place :
         {"/config_sync_status/last_config_sync_success", "/certificate_status/certificate_expiration_time",
          "/certificate_status/last_renewal_attempt_time"}) {
        EXPECT_THAT(decodingStatus(enrolledWith(place, -5)), throwsNotExact()) << place;
    }
}

TEST(StatusNotificationEntries, TheEnrollmentTimeIsSigned) {
    EXPECT_THAT(decodingStatus(enrolledWith("/enrollment_time", 9223372036854775808u)), throwsNotExact());
    EXPECT_EQ(
        firstEnrollment(enrolledWith("/certificate_status/certificate_expiration_time", 9223372036854775808u))
            .certificate_status.certificate_expiration_time,
        0);
}

TEST(StatusNotificationEntries, TimesBeyondTheRecordsRangeWrap) {
    const std::string_view key = "last_config_sync_success";
    // 2^64 - 1 seconds are -1 second modulo 2^64.
    EXPECT_EQ(decodedConfigSync(key, 18446744073709551615u).last_config_sync_success, -10000000);
    // 922337203686 * 10^7 = 2^63 + 5224192 (2^63 being 9223372036854775808).
    EXPECT_EQ(decodedConfigSync(key, 922337203686).last_config_sync_success, -9223372036849551616);
    EXPECT_EQ(firstEnrollment(enrolledWith("/enrollment_time", -922337203686)).enrollment_time,
              9223372036849551616);
}

} // namespace
