#include "common/api/QuillApiDefsUtil.h"
#include "common2/util/GlobalError.h"
#include "tests/common/api/DecoderFaults.h"
#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/string.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

namespace json = boost::json;
using test::enrolledStatusDocument;
using test::notEnrolledStatusDocument;
using test::throwsInvalidArgument;
using test::with;
using test::without;

/// An error code as a caller may hand it in: the decoder must clear it.
std::error_code staleError() { return makeGlobalError(QuillApiResult::Eof); }

StatusNotification_t decoded(const json::value& document) {
    std::error_code error = staleError();
    StatusNotification_t status = StatusNotificationFromJson(document, error);
    EXPECT_FALSE(error) << error.message();
    return status;
}

StatusNotification_t decodedText(std::string_view text) { return decoded(json::parse(text)); }

/// The document's soft failure: its code, and no text or list in the record.
void expectSoftFailure(const json::value& document) {
    std::error_code error;
    const StatusNotification_t status = StatusNotificationFromJson(document, error);
    EXPECT_EQ(error.value(), 1) << document;
    EXPECT_STREQ(error.category().name(), "global_error");
    EXPECT_EQ(status.version, "");
    EXPECT_EQ(status.state, "");
    EXPECT_EQ(status.substate, "");
    EXPECT_TRUE(status.enrollment_choices.empty());
    EXPECT_TRUE(status.enrollments.empty());
}

auto decoding(json::value document) {
    return test::decoding(StatusNotificationFromJson, std::move(document));
}

std::string statusEnrollmentPlace(std::string_view place) { return "/enrollments/0" + std::string(place); }

// Sound documents

TEST(StatusNotificationFromJson, ReadsEveryFieldOfAnEnrolledStatus) {
    EXPECT_EQ(decoded(enrolledStatusDocument()), test::enrolledStatus());
}

TEST(StatusNotificationFromJson, ReadsEveryFieldOfANotEnrolledStatus) {
    EXPECT_EQ(decoded(notEnrolledStatusDocument()), test::notEnrolledStatus());
}

TEST(StatusNotificationFromJson, ReadsInitAndErrorStatus) {
    EXPECT_EQ(decoded(test::initStatusDocument()), test::initStatus());
    EXPECT_EQ(decoded(test::errorStatusDocument("no_choice")), test::errorStatus("no_choice"));
}

TEST(StatusNotificationFromJson, ErrorStateNeedsVersionAndStateOnly) {
    const StatusNotification_t status = decodedText(R"({"version":"1","state":"error"})");
    EXPECT_EQ(status.version, "1");
    EXPECT_EQ(status.state, "error");
    EXPECT_EQ(status.substate, "");
    EXPECT_EQ(status.interceptor_connectivity, InterceptorConnectivity::Unknown);
    EXPECT_EQ(status.posture_connectivity, PostureConnectivity::Unknown);
    EXPECT_EQ(status.hw_key_store_availability, HwKeyStoreAvailability::Unknown);
    EXPECT_EQ(status.service_status, ServiceStatus::Unknown);
    EXPECT_TRUE(status.enrollment_choices.empty());
    EXPECT_TRUE(status.enrollments.empty());
}

TEST(StatusNotificationFromJson, ErrorStateIgnoresTheLists) {
    const StatusNotification_t status = decodedText(
        R"({"version":"1","state":"error","enrollment_choices":[{"id":"c"}],"enrollments":"no list"})");
    EXPECT_TRUE(status.enrollment_choices.empty());
    EXPECT_TRUE(status.enrollments.empty());
}

TEST(StatusNotificationFromJson, ErrorStateKeepsWhatElseItCarries) {
    const StatusNotification_t status = decodedText(
        R"({"version":"2","state":"error","substate":"s","posture_connectivity":"ok","service_status":"notice"})");
    EXPECT_EQ(status.substate, "s");
    EXPECT_EQ(status.posture_connectivity, PostureConnectivity::Ok);
    EXPECT_EQ(status.service_status, ServiceStatus::Notice);
}

TEST(StatusNotificationFromJson, ListsKeepTheirOrder) {
    const StatusNotification_t status =
        decodedText(R"({"version":"1","state":"inactive","enrollment_choices":[{"id":"b"},{"id":"a"}],)"
                    R"("enrollments":[{"id":"2"},{"id":"1"},{"id":"3"}]})");
    ASSERT_EQ(status.enrollment_choices.size(), 2u);
    EXPECT_EQ(status.enrollment_choices[0].id, "b");
    EXPECT_EQ(status.enrollment_choices[1].id, "a");
    ASSERT_EQ(status.enrollments.size(), 3u);
    EXPECT_EQ(status.enrollments[0].id, "2");
    EXPECT_EQ(status.enrollments[1].id, "1");
    EXPECT_EQ(status.enrollments[2].id, "3");
}

TEST(StatusNotificationFromJson, EmptyListsAreSuccess) {
    EXPECT_TRUE(decoded(with(enrolledStatusDocument(), "/enrollments", json::array{})).enrollments.empty());
}

TEST(StatusNotificationFromJson, EmptyListEntriesKeepTheirDefaults) {
    const StatusNotification_t status =
        decodedText(R"({"version":"1","state":"x","enrollment_choices":[{}],"enrollments":[{}]})");
    ASSERT_EQ(status.enrollment_choices.size(), 1u);
    EXPECT_EQ(status.enrollment_choices[0], EnrollmentChoice_t());
    EXPECT_FALSE(status.enrollment_choices[0].enroll_allowed);
    ASSERT_EQ(status.enrollments.size(), 1u);
    EXPECT_EQ(status.enrollments[0], Enrollment_t());
    EXPECT_FALSE(status.enrollments[0].unenroll_allowed);
    EXPECT_FALSE(status.enrollments[0].reenroll_allowed);
    EXPECT_EQ(status.enrollments[0].enrollment_time, 0);
    EXPECT_EQ(status.enrollments[0].certificate_status.certificate_state, CertificateState::Unknown);
}

TEST(StatusNotificationFromJson, EnrollmentKeysAreOptionalOneByOne) {
    for (const char* key : {"state", "substate", "id", "type", "label", "enrollment_time", "unenroll_allowed",
                            "reenroll_allowed", "config_sync_status", "certificate_status",
                            "dataplane_status", "network_status"}) {
        EXPECT_NE(decoded(without(enrolledStatusDocument(), statusEnrollmentPlace("/") + key)),
                  test::enrolledStatus())
            << key;
    }
}

TEST(StatusNotificationFromJson, ChoiceKeysAreOptionalOneByOne) {
    for (const char* key : {"state", "id", "type", "label", "enroll_allowed"}) {
        const auto document =
            without(notEnrolledStatusDocument(), "/enrollment_choices/0/" + std::string(key));
        EXPECT_NE(decoded(document), test::notEnrolledStatus()) << key;
    }
}

TEST(StatusNotificationFromJson, UnknownKeysAreIgnored) {
    auto document = with(enrolledStatusDocument(), "/news", json::array{1, 2});
    document = with(document, "/enrollments/0/news", nullptr);
    document = with(document, "/enrollments/0/certificate_status/news", 3);
    EXPECT_EQ(decoded(document), test::enrolledStatus());
}

// The top level

TEST(StatusNotificationFromJson, AnythingButAnObjectFailsSoftly) {
    for (const char* text : {"{}", "[]", "[{}]", "null", "true", "1", "\"text\""}) {
        expectSoftFailure(json::parse(text));
    }
}

TEST(StatusNotificationFromJson, VersionMustBeAText) {
    expectSoftFailure(without(enrolledStatusDocument(), "/version"));
    expectSoftFailure(with(enrolledStatusDocument(), "/version", 1));
}

TEST(StatusNotificationFromJson, StateMustBeAText) {
    expectSoftFailure(without(enrolledStatusDocument(), "/state"));
    expectSoftFailure(with(enrolledStatusDocument(), "/state", nullptr));
}

TEST(StatusNotificationFromJson, SubstateMayBeAbsentButMustBeAText) {
    EXPECT_EQ(decoded(without(enrolledStatusDocument(), "/substate")).substate, "");
    expectSoftFailure(with(enrolledStatusDocument(), "/substate", nullptr));
    expectSoftFailure(with(enrolledStatusDocument(), "/substate", 4));
}

TEST(StatusNotificationFromJson, ActiveStateNeedsEveryConnectivity) {
    expectSoftFailure(json::parse(R"({"version":"1","state":"active"})"));
    for (const char* key :
         {"/interceptor_connectivity", "/posture_connectivity", "/hw_key_store_availability"}) {
        expectSoftFailure(without(enrolledStatusDocument(), key));
    }
}

TEST(StatusNotificationFromJson, OtherStatesNeedNoConnectivity) {
    const StatusNotification_t status =
        decodedText(R"({"version":"1","state":"inactive_tnd","enrollment_choices":[],"enrollments":[]})");
    EXPECT_EQ(status.interceptor_connectivity, InterceptorConnectivity::Unknown);
    EXPECT_EQ(status.posture_connectivity, PostureConnectivity::Unknown);
    EXPECT_EQ(status.hw_key_store_availability, HwKeyStoreAvailability::Unknown);
}

TEST(StatusNotificationFromJson, StatesAreComparedExactly) {
    const char* lists = R"("enrollment_choices":[],"enrollments":[]})";
    EXPECT_EQ(decodedText(R"({"version":"1","state":"Active",)" + std::string(lists)).state, "Active");
    expectSoftFailure(json::parse(R"({"version":"1","state":"Error"})"));
}

TEST(StatusNotificationFromJson, OtherStatesNeedTheLists) {
    expectSoftFailure(json::parse(R"({"version":"1","state":"inactive_tnd"})"));
    expectSoftFailure(without(enrolledStatusDocument(), "/enrollment_choices"));
    expectSoftFailure(without(enrolledStatusDocument(), "/enrollments"));
}

TEST(StatusNotificationFromJson, ListsMustBeArrays) {
    expectSoftFailure(with(enrolledStatusDocument(), "/enrollment_choices", json::object{}));
    expectSoftFailure(with(enrolledStatusDocument(), "/enrollments", nullptr));
}

TEST(StatusNotificationFromJson, SoftFailureAfterDecodedListsLeavesThemOut) {
    expectSoftFailure(without(notEnrolledStatusDocument(), "/enrollments"));
}

// Enumerations of the top level

TEST(StatusNotificationFromJson, ReadsEveryLiteralOfTheTopLevel) {
    const auto read = [](std::string_view place, const char* literal) {
        return decoded(with(enrolledStatusDocument(), place, literal));
    };
    EXPECT_EQ(read("/interceptor_connectivity", "upgrade_pending").interceptor_connectivity,
              InterceptorConnectivity::DisconnectedUpgradePending);
    EXPECT_EQ(read("/interceptor_connectivity", "planned_disruption").interceptor_connectivity,
              InterceptorConnectivity::DisconnectedOtherPlannedDisruption);
    EXPECT_EQ(read("/posture_connectivity", "bad_response").posture_connectivity,
              PostureConnectivity::BadResponse);
    EXPECT_EQ(read("/hw_key_store_availability", "not_supported").hw_key_store_availability,
              HwKeyStoreAvailability::NotSupported);
    EXPECT_EQ(read("/service_status", "pending").service_status, ServiceStatus::Pending);
}

TEST(StatusNotificationFromJson, UnlistedLiteralsDecodeToUnknown) {
    auto document = with(enrolledStatusDocument(), "/interceptor_connectivity", "LoadFailed");
    document = with(document, "/posture_connectivity", "perhaps");
    document = with(document, "/hw_key_store_availability", "");
    document = with(document, "/service_status", "Notice");
    const StatusNotification_t status = decoded(document);
    EXPECT_EQ(status.interceptor_connectivity, InterceptorConnectivity::Unknown);
    EXPECT_EQ(status.posture_connectivity, PostureConnectivity::Unknown);
    EXPECT_EQ(status.hw_key_store_availability, HwKeyStoreAvailability::Unknown);
    EXPECT_EQ(static_cast<std::uint32_t>(status.service_status), 6u);
}

TEST(StatusNotificationFromJson, AbsentServiceStatusIsUnknown) {
    EXPECT_EQ(decoded(without(enrolledStatusDocument(), "/service_status")).service_status,
              ServiceStatus::Unknown);
}

TEST(StatusNotificationFromJson, EnumerationOfAnotherKindThrows) {
    for (const char* place : {"/interceptor_connectivity", "/posture_connectivity",
                              "/hw_key_store_availability", "/service_status"}) {
        EXPECT_THAT(decoding(with(enrolledStatusDocument(), place, 1)), throwsInvalidArgument("not a string"))
            << place;
    }
}

TEST(StatusNotificationFromJson, TheFirstFaultDecides) {
    // A connectivity of the wrong kind comes before the missing one behind it, and the missing one before a
    // service status of the wrong kind.
    auto document = without(enrolledStatusDocument(), "/posture_connectivity");
    EXPECT_THAT(decoding(with(document, "/interceptor_connectivity", 1)),
                throwsInvalidArgument("not a string"));
    expectSoftFailure(with(document, "/service_status", 1));
    // A fault inside a choice comes before missing enrollments.
    document = without(notEnrolledStatusDocument(), "/enrollments");
    EXPECT_THAT(decoding(with(document, "/enrollment_choices/0", 1)), throwsInvalidArgument("not an object"));
}

// Texts and NUL bytes

const json::string statusNulText("ab\0cd", 5);

TEST(StatusNotificationFromJson, TextsOfListEntriesEndAtTheirFirstNul) {
    for (const char* key : {"state", "substate", "id", "type", "label"}) {
        const auto document =
            json::parse(R"({"version":"1","state":"x","enrollment_choices":[],"enrollments":[{}]})");
        const Enrollment_t entry =
            decoded(with(document, statusEnrollmentPlace("/") + key, statusNulText)).enrollments[0];
        EXPECT_EQ(entry.state + entry.substate + entry.id + entry.type + entry.label, "ab") << key;
    }
    for (const char* key : {"state", "id", "type", "label"}) {
        const auto document =
            json::parse(R"({"version":"1","state":"x","enrollment_choices":[{}],"enrollments":[]})");
        const EnrollmentChoice_t entry =
            decoded(with(document, "/enrollment_choices/0/" + std::string(key), statusNulText))
                .enrollment_choices[0];
        EXPECT_EQ(entry.state + entry.id + entry.type + entry.label, "ab") << key;
    }
}

TEST(StatusNotificationFromJson, LiteralsEndAtTheirFirstNul) {
    const json::string literal("ok\0 so far", 10);
    const StatusNotification_t status =
        decoded(with(enrolledStatusDocument(), "/posture_connectivity", literal));
    EXPECT_EQ(status.posture_connectivity, PostureConnectivity::Ok);
}

TEST(StatusNotificationFromJson, OtherTextsAreKeptWhole) {
    auto document = with(enrolledStatusDocument(), "/version", statusNulText);
    document = with(document, "/state", statusNulText);
    document = with(document, "/substate", statusNulText);
    document = with(document, "/enrollments/0/certificate_status/certificate_urns/user_name", statusNulText);
    document = with(document, "/enrollments/0/dataplane_status/proxy_configs/0/label", statusNulText);
    document = with(document, "/enrollments/0/dataplane_status/proxy_configs/0/status", statusNulText);
    document = with(document, "/enrollments/0/network_status/fingerprints/0/label", statusNulText);
    const StatusNotification_t status = decoded(document);
    const std::string whole("ab\0cd", 5);
    EXPECT_EQ(status.version, whole);
    EXPECT_EQ(status.state, whole);
    EXPECT_EQ(status.substate, whole);
    const Enrollment_t& enrollment = status.enrollments[0];
    EXPECT_EQ(enrollment.certificate_status.certificate_urns.user_name, whole);
    EXPECT_EQ(enrollment.dataplane_status.proxy_configs[0].label, whole);
    EXPECT_EQ(enrollment.dataplane_status.proxy_configs[0].status, whole);
    EXPECT_EQ(enrollment.network_status.fingerprints[0].label, whole);
}

} // namespace
