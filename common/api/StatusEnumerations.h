/// The enumerations of the status notification and their words. A literal outside its table decodes to
/// `Unknown`, but for `FingerprintStatus`, where it is a failure.
#pragma once

#include "common/api/EnumerationWords.h"

#include <cstdint>

/// Whether the component that diverts flows into the module works.
enum class InterceptorConnectivity : std::uint32_t {
    Unknown,
    Ok,
    LoadFailed,
    ConfigFailed,
    InvalidConfig,
    ApprovalRequired,
    RebootRequired,
    Disconnected,
    DisconnectedUpgradePending,
    DisconnectedOtherPlannedDisruption,
    CodeSignCheckFailed,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<InterceptorConnectivity, 12> enumerationWords<InterceptorConnectivity>{{
    {InterceptorConnectivity::Unknown, "unknown", "Unknown"},
    {InterceptorConnectivity::Ok, "ok", "Ok"},
    {InterceptorConnectivity::LoadFailed, "load_failed", "LoadFailed"},
    {InterceptorConnectivity::ConfigFailed, "config_failed", "ConfigFailed"},
    {InterceptorConnectivity::InvalidConfig, "invalid_config", "InvalidConfig"},
    {InterceptorConnectivity::ApprovalRequired, "approval_required", "ApprovalRequired"},
    {InterceptorConnectivity::RebootRequired, "reboot_required", "RebootRequired"},
    {InterceptorConnectivity::Disconnected, "disconnected", "Disconnected"},
    {InterceptorConnectivity::DisconnectedUpgradePending, "upgrade_pending", "DisconnectedUpgradePending"},
    {InterceptorConnectivity::DisconnectedOtherPlannedDisruption, "planned_disruption",
     "DisconnectedOtherPlannedDisruption"},
    {InterceptorConnectivity::CodeSignCheckFailed, "code_sign_check_failed", "CodeSignCheckFailed"},
    {InterceptorConnectivity::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(InterceptorConnectivity::InternalError));

/// Whether the posture application on the device answers.
enum class PostureConnectivity : std::uint32_t {
    Unknown,
    Ok,
    Unreachable,
    BadResponse,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<PostureConnectivity, 5> enumerationWords<PostureConnectivity>{{
    {PostureConnectivity::Unknown, "unknown", "Unknown"},
    {PostureConnectivity::Ok, "ok", "Ok"},
    {PostureConnectivity::Unreachable, "unreachable", "Unreachable"},
    {PostureConnectivity::BadResponse, "bad_response", "BadResponse"},
    {PostureConnectivity::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(PostureConnectivity::InternalError));

/// Whether a server of the organisation (config sync, dataplane proxy) can be reached.
enum class ServerConnectivity : std::uint32_t {
    Unknown,
    Ok,
    Unreachable,
    BadClientCert,
    BadServerCert,
    BadResponse,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<ServerConnectivity, 7> enumerationWords<ServerConnectivity>{{
    {ServerConnectivity::Unknown, "unknown", "Unknown"},
    {ServerConnectivity::Ok, "ok", "Ok"},
    {ServerConnectivity::Unreachable, "unreachable", "Unreachable"},
    {ServerConnectivity::BadClientCert, "bad_client_cert", "BadClientCert"},
    {ServerConnectivity::BadServerCert, "bad_server_cert", "BadServerCert"},
    {ServerConnectivity::BadResponse, "bad_response", "BadResponse"},
    {ServerConnectivity::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(ServerConnectivity::InternalError));

/// Whether the device has a hardware key store (TPM) to enrol with.
enum class HwKeyStoreAvailability : std::uint32_t {
    Unknown,
    Ok,
    NotSupported,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<HwKeyStoreAvailability, 4> enumerationWords<HwKeyStoreAvailability>{{
    {HwKeyStoreAvailability::Unknown, "unknown", "Unknown"},
    {HwKeyStoreAvailability::Ok, "ok", "Ok"},
    {HwKeyStoreAvailability::NotSupported, "not_supported", "NotSupported"},
    {HwKeyStoreAvailability::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(HwKeyStoreAvailability::InternalError));

/// How the service behind the backend library fares. No document yields the values 1 to 3, and 0 is not
/// `Unknown` here.
enum class ServiceStatus : std::uint32_t {
    Ok = 0,
    Notice = 4,
    Pending = 5,
    Unknown = 6,
};

template <>
inline constexpr EnumerationWordTable<ServiceStatus, 4> enumerationWords<ServiceStatus>{{
    {ServiceStatus::Ok, "ok", "Ok"},
    {ServiceStatus::Notice, "notice", "Notice"},
    {ServiceStatus::Pending, "pending", "Pending"},
    {ServiceStatus::Unknown, "unknown", "Unknown"},
}};

enum class CertificateState : std::uint32_t {
    Unknown,
    Ok,
    Expired,
    Revoked,
    Rejected,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<CertificateState, 6> enumerationWords<CertificateState>{{
    {CertificateState::Unknown, "unknown", "Unknown"},
    {CertificateState::Ok, "ok", "Ok"},
    {CertificateState::Expired, "expired", "Expired"},
    {CertificateState::Revoked, "revoked", "Revoked"},
    {CertificateState::Rejected, "rejected", "Rejected"},
    {CertificateState::InternalError, "internal_error", "InternalError"},
}};
static_assert(coversEnumeration(CertificateState::InternalError));

enum class CertificateRenewalStatus : std::uint32_t {
    Unknown,
    Ok,
    Waiting,
    InternalError,
};

template <>
inline constexpr EnumerationWordTable<CertificateRenewalStatus, 4> enumerationWords<CertificateRenewalStatus>{
    {
        {CertificateRenewalStatus::Unknown, "unknown", "Unknown"},
        {CertificateRenewalStatus::Ok, "ok", "Ok"},
        {CertificateRenewalStatus::Waiting, "waiting", "Waiting"},
        {CertificateRenewalStatus::InternalError, "internal_error", "InternalError"},
    }};
static_assert(coversEnumeration(CertificateRenewalStatus::InternalError));

/// Whether the device is in a network that its configuration describes. Here JSON carries the names.
enum class FingerprintStatus : std::uint32_t {
    Unknown,
    Matched,
    Unmatched,
};

template <>
inline constexpr EnumerationWordTable<FingerprintStatus, 3> enumerationWords<FingerprintStatus>{{
    {FingerprintStatus::Unknown, "Unknown", "Unknown"},
    {FingerprintStatus::Matched, "Matched", "Matched"},
    {FingerprintStatus::Unmatched, "Unmatched", "Unmatched"},
}};
static_assert(coversEnumeration(FingerprintStatus::Unmatched));
