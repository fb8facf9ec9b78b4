#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentEnumerations.h"
#include "common/api/StatusEnumerations.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>

namespace {

template <class Enumeration>
struct Row {
    Enumeration enumerator;
    std::uint32_t value;
    const char* literal; ///< null where the backend never sends the value
    const char* name;
};

template <class Enumeration>
void expectWords(std::initializer_list<Row<Enumeration>> rows) {
    for (const Row<Enumeration>& row : rows) {
        EXPECT_EQ(static_cast<std::uint32_t>(row.enumerator), row.value) << row.name;
        EXPECT_EQ(nameOf(static_cast<Enumeration>(row.value)), row.name);
        if (row.literal) {
            EXPECT_EQ(valueOfLiteral<Enumeration>(row.literal), row.enumerator) << row.literal;
        }
    }
    EXPECT_EQ(enumerationWords<Enumeration>.size(), rows.size());
    EXPECT_EQ(valueOfLiteral<Enumeration>("no such literal"), std::nullopt);
}

template <class Enumeration>
void expectNoName(std::uint32_t value) {
    EXPECT_EQ(nameOf(static_cast<Enumeration>(value)), "") << value;
}

TEST(InterceptorConnectivity, HasTheWordsOfItsTable) {
    using Value = InterceptorConnectivity;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::LoadFailed, 2, "load_failed", "LoadFailed"},
        {Value::ConfigFailed, 3, "config_failed", "ConfigFailed"},
        {Value::InvalidConfig, 4, "invalid_config", "InvalidConfig"},
        {Value::ApprovalRequired, 5, "approval_required", "ApprovalRequired"},
        {Value::RebootRequired, 6, "reboot_required", "RebootRequired"},
        {Value::Disconnected, 7, "disconnected", "Disconnected"},
        {Value::DisconnectedUpgradePending, 8, "upgrade_pending", "DisconnectedUpgradePending"},
        {Value::DisconnectedOtherPlannedDisruption, 9, "planned_disruption",
         "DisconnectedOtherPlannedDisruption"},
        {Value::CodeSignCheckFailed, 10, "code_sign_check_failed", "CodeSignCheckFailed"},
        {Value::InternalError, 11, "internal_error", "InternalError"},
    });
    expectNoName<Value>(12);
}

TEST(PostureConnectivity, HasTheWordsOfItsTable) {
    using Value = PostureConnectivity;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::Unreachable, 2, "unreachable", "Unreachable"},
        {Value::BadResponse, 3, "bad_response", "BadResponse"},
        {Value::InternalError, 4, "internal_error", "InternalError"},
    });
    expectNoName<Value>(5);
}

TEST(ServerConnectivity, HasTheWordsOfItsTable) {
    using Value = ServerConnectivity;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::Unreachable, 2, "unreachable", "Unreachable"},
        {Value::BadClientCert, 3, "bad_client_cert", "BadClientCert"},
        {Value::BadServerCert, 4, "bad_server_cert", "BadServerCert"},
        {Value::BadResponse, 5, "bad_response", "BadResponse"},
        {Value::InternalError, 6, "internal_error", "InternalError"},
    });
    expectNoName<Value>(7);
}

TEST(HwKeyStoreAvailability, HasTheWordsOfItsTable) {
    using Value = HwKeyStoreAvailability;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::NotSupported, 2, "not_supported", "NotSupported"},
        {Value::InternalError, 3, "internal_error", "InternalError"},
    });
    expectNoName<Value>(4);
}

TEST(ServiceStatus, HasTheWordsOfItsTableWithAHole) {
    using Value = ServiceStatus;
    expectWords<Value>({
        {Value::Ok, 0, "ok", "Ok"},
        {Value::Notice, 4, "notice", "Notice"},
        {Value::Pending, 5, "pending", "Pending"},
        {Value::Unknown, 6, "unknown", "Unknown"},
    });
    for (const std::uint32_t value : {1u, 2u, 3u, 7u}) {
        expectNoName<Value>(value);
    }
}

TEST(CertificateState, HasTheWordsOfItsTable) {
    using Value = CertificateState;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::Expired, 2, "expired", "Expired"},
        {Value::Revoked, 3, "revoked", "Revoked"},
        {Value::Rejected, 4, "rejected", "Rejected"},
        {Value::InternalError, 5, "internal_error", "InternalError"},
    });
    expectNoName<Value>(6);
}

TEST(CertificateRenewalStatus, HasTheWordsOfItsTable) {
    using Value = CertificateRenewalStatus;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Ok, 1, "ok", "Ok"},
        {Value::Waiting, 2, "waiting", "Waiting"},
        {Value::InternalError, 3, "internal_error", "InternalError"},
    });
    expectNoName<Value>(4);
}

TEST(FingerprintStatus, HasItsNamesAsLiterals) {
    using Value = FingerprintStatus;
    expectWords<Value>({
        {Value::Unknown, 0, "Unknown", "Unknown"},
        {Value::Matched, 1, "Matched", "Matched"},
        {Value::Unmatched, 2, "Unmatched", "Unmatched"},
    });
    expectNoName<Value>(3);
}

TEST(EnrollmentStatus, HasTheWordsOfItsTable) {
    using Value = EnrollmentStatus;
    expectWords<Value>({
        {Value::Unknown, 0, nullptr, "Unknown"},
        {Value::Error, 1, "error", "Error"},
        {Value::Started, 2, "started", "Started"},
        {Value::Complete, 3, "complete", "Complete"},
    });
    expectNoName<Value>(4);
}

TEST(UnenrollmentStatus, HasTheWordsOfItsTable) {
    using Value = UnenrollmentStatus;
    expectWords<Value>({
        {Value::Unknown, 0, nullptr, "Unknown"},
        {Value::Error, 1, "error", "Error"},
        {Value::Started, 2, "started", "Started"},
        {Value::Complete, 3, "complete", "Complete"},
    });
    expectNoName<Value>(4);
}

TEST(EnrollmentSubstatus, HasTheWordsOfItsTable) {
    using Value = EnrollmentSubstatus;
    expectWords<Value>({
        {Value::Unknown, 0, nullptr, "Unknown"},
        {Value::None, 1, "", "None"},
        {Value::Success, 2, "success", "Success"},
        {Value::Cancelled, 3, "cancelled", "Cancelled"},
        {Value::InvalidChoiceId, 4, "invalid_choice_id", "InvalidChoiceId"},
        {Value::InvalidEnrollmentId, 5, "invalid_enrollment_id", "InvalidEnrollmentId"},
        {Value::InternalError, 6, "internal_error", "InternalError"},
        {Value::InitializationError, 7, "initialization_error", "InitializationError"},
        {Value::UserAuthenticationError, 8, "user_authentication_error", "UserAuthenticationError"},
        {Value::DeviceRegistrationError, 9, "device_registration_error", "DeviceRegistrationError"},
        {Value::PostureRegistrationError, 10, "posture_registration_error", "PostureRegistrationError"},
        {Value::CertificateEnrollmentError, 11, "certificate_enrollment_error", "CertificateEnrollmentError"},
        {Value::ServerCommunicationError, 12, "server_communication_error", "ServerCommunicationError"},
        {Value::ServerCertificateError, 13, "server_certificate_error", "ServerCertificateError"},
        {Value::PostureNoHardwareSecurityError, 14, "posture_no_hardware_security_error",
         "PostureNoHardwareSecurityError"},
    });
    expectNoName<Value>(15);
}

TEST(UnenrollmentSubstatus, HasTheWordsOfItsTable) {
    using Value = UnenrollmentSubstatus;
    expectWords<Value>({
        {Value::Unknown, 0, nullptr, "Unknown"},
        {Value::None, 1, "", "None"},
        {Value::Success, 2, "success", "Success"},
        {Value::InvalidEnrollmentId, 3, "invalid_enrollment_id", "InvalidEnrollmentId"},
        {Value::InternalError, 4, "internal_error", "InternalError"},
    });
    expectNoName<Value>(5);
}

TEST(EnrollmentInternalStatus, HasNamesAndNoLiterals) {
    using Value = EnrollmentInternalStatus;
    expectWords<Value>({
        {Value::Initiating, 0, nullptr, "Initiating"},
        {Value::Cancelling, 1, nullptr, "Cancelling"},
        {Value::AuthDone, 2, nullptr, "AuthDone"},
        {Value::Aborted, 3, nullptr, "Aborted"},
    });
    expectNoName<Value>(4);
    EXPECT_EQ(valueOfLiteral<Value>(""), std::nullopt);
}

TEST(UnenrollmentInternalStatus, HasNamesAndNoLiterals) {
    using Value = UnenrollmentInternalStatus;
    expectWords<Value>({
        {Value::Initiating, 0, nullptr, "Initiating"},
        {Value::Aborted, 1, nullptr, "Aborted"},
    });
    expectNoName<Value>(2);
    EXPECT_EQ(valueOfLiteral<Value>(""), std::nullopt);
}

TEST(DataplaneAlertCategory, HasTheWordsOfItsTable) {
    using Value = DataplaneAlertCategory;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::PostureError, 1, "posture_error", "PostureError"},
        {Value::PolicyError, 2, "policy_error", "PolicyError"},
        {Value::ConnectivityError, 3, "connectivity_error", "ConnectivityError"},
    });
    expectNoName<Value>(4);
}

TEST(DataplaneProto, HasTheWordsOfItsTable) {
    using Value = DataplaneProto;
    expectWords<Value>({
        {Value::Unknown, 0, "unknown", "Unknown"},
        {Value::Tcp, 1, "tcp", "Tcp"},
        {Value::Udp, 2, "udp", "Udp"},
        {Value::Icmp, 3, "icmp", "Icmp"},
    });
    expectNoName<Value>(4);
}

TEST(Literals, AreMatchedCaseIncluded) {
    EXPECT_EQ(valueOfLiteral<PostureConnectivity>("OK"), std::nullopt);
    EXPECT_EQ(valueOfLiteral<FingerprintStatus>("matched"), std::nullopt);
    EXPECT_EQ(valueOfLiteral<EnrollmentStatus>("Started"), std::nullopt);
}

TEST(Literals, OfOneTableMeanNothingInAnother) {
    EXPECT_EQ(valueOfLiteral<UnenrollmentSubstatus>("cancelled"), std::nullopt);
    EXPECT_EQ(valueOfLiteral<PostureConnectivity>("bad_client_cert"), std::nullopt);
}

} // namespace
