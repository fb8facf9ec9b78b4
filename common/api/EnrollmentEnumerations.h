/// The enumerations of enrollment and unenrollment progress and their words. Decoding never yields `Unknown`:
/// a literal outside its table is a failure.
#pragma once

#include "common/api/EnumerationWords.h"

#include <cstdint>

enum class EnrollmentStatus : std::uint32_t { Unknown, Error, Started, Complete };

template <>
inline constexpr EnumerationWordTable<EnrollmentStatus, 4> enumerationWords<EnrollmentStatus>{{
    {EnrollmentStatus::Unknown, std::nullopt, "Unknown"},
    {EnrollmentStatus::Error, "error", "Error"},
    {EnrollmentStatus::Started, "started", "Started"},
    {EnrollmentStatus::Complete, "complete", "Complete"},
}};
static_assert(coversEnumeration(EnrollmentStatus::Complete));

enum class UnenrollmentStatus : std::uint32_t { Unknown, Error, Started, Complete };

template <>
inline constexpr EnumerationWordTable<UnenrollmentStatus, 4> enumerationWords<UnenrollmentStatus>{{
    {UnenrollmentStatus::Unknown, std::nullopt, "Unknown"},
    {UnenrollmentStatus::Error, "error", "Error"},
    {UnenrollmentStatus::Started, "started", "Started"},
    {UnenrollmentStatus::Complete, "complete", "Complete"},
}};
static_assert(coversEnumeration(UnenrollmentStatus::Complete));

enum class EnrollmentSubstatus : std::uint32_t {
    Unknown,
    None,
    Success,
    Cancelled,
    InvalidChoiceId,
    InvalidEnrollmentId,
    InternalError,
    InitializationError,
    UserAuthenticationError,
    DeviceRegistrationError,
    PostureRegistrationError,
    CertificateEnrollmentError,
    ServerCommunicationError,
    ServerCertificateError,
    PostureNoHardwareSecurityError,
};

template <>
inline constexpr EnumerationWordTable<EnrollmentSubstatus, 15> enumerationWords<EnrollmentSubstatus>{{
    {EnrollmentSubstatus::Unknown, std::nullopt, "Unknown"},
    {EnrollmentSubstatus::None, "", "None"},
    {EnrollmentSubstatus::Success, "success", "Success"},
    {EnrollmentSubstatus::Cancelled, "cancelled", "Cancelled"},
    {EnrollmentSubstatus::InvalidChoiceId, "invalid_choice_id", "InvalidChoiceId"},
    {EnrollmentSubstatus::InvalidEnrollmentId, "invalid_enrollment_id", "InvalidEnrollmentId"},
    {EnrollmentSubstatus::InternalError, "internal_error", "InternalError"},
    {EnrollmentSubstatus::InitializationError, "initialization_error", "InitializationError"},
    {EnrollmentSubstatus::UserAuthenticationError, "user_authentication_error", "UserAuthenticationError"},
    {EnrollmentSubstatus::DeviceRegistrationError, "device_registration_error", "DeviceRegistrationError"},
    {EnrollmentSubstatus::PostureRegistrationError, "posture_registration_error", "PostureRegistrationError"},
    {EnrollmentSubstatus::CertificateEnrollmentError, "certificate_enrollment_error",
     "CertificateEnrollmentError"},
    {EnrollmentSubstatus::ServerCommunicationError, "server_communication_error", "ServerCommunicationError"},
    {EnrollmentSubstatus::ServerCertificateError, "server_certificate_error", "ServerCertificateError"},
    {EnrollmentSubstatus::PostureNoHardwareSecurityError, "posture_no_hardware_security_error",
     "PostureNoHardwareSecurityError"},
}};
static_assert(coversEnumeration(EnrollmentSubstatus::PostureNoHardwareSecurityError));

enum class UnenrollmentSubstatus : std::uint32_t {
    Unknown,
    None,
    Success,
    InvalidEnrollmentId,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<UnenrollmentSubstatus, 5> enumerationWords<UnenrollmentSubstatus>{{
    {UnenrollmentSubstatus::Unknown, std::nullopt, "Unknown"},
    {UnenrollmentSubstatus::None, "", "None"},
    {UnenrollmentSubstatus::Success, "success", "Success"},
    {UnenrollmentSubstatus::InvalidEnrollmentId, "invalid_enrollment_id", "InvalidEnrollmentId"},
    {UnenrollmentSubstatus::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(UnenrollmentSubstatus::InternalError));

/// Progress of an enrollment that the plugin knows of before the backend does.
enum class EnrollmentInternalStatus : std::uint32_t { Initiating, Cancelling, AuthDone, Aborted };

template <>
inline constexpr EnumerationWordTable<EnrollmentInternalStatus, 4> enumerationWords<EnrollmentInternalStatus>{
    {
        {EnrollmentInternalStatus::Initiating, std::nullopt, "Initiating"},
        {EnrollmentInternalStatus::Cancelling, std::nullopt, "Cancelling"},
        {EnrollmentInternalStatus::AuthDone, std::nullopt, "AuthDone"},
        {EnrollmentInternalStatus::Aborted, std::nullopt, "Aborted"},
    }};
static_assert(coversEnumeration(EnrollmentInternalStatus::Aborted));

/// Progress of an unenrollment that the plugin knows of before the backend does.
enum class UnenrollmentInternalStatus : std::uint32_t { Initiating, Aborted };

template <>
inline constexpr EnumerationWordTable<UnenrollmentInternalStatus, 2>
    enumerationWords<UnenrollmentInternalStatus>{{
        {UnenrollmentInternalStatus::Initiating, std::nullopt, "Initiating"},
        {UnenrollmentInternalStatus::Aborted, std::nullopt, "Aborted"},
    }};
static_assert(coversEnumeration(UnenrollmentInternalStatus::Aborted));
