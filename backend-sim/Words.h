/// The words that the service uses in its documents and takes in its scenario. The first of each table is
/// what a healthy device says.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace sim {

/// One of a table's words, in static storage; empty where none was chosen.
using Word = std::string_view;
using Words = std::span<const Word>;

namespace words {

/// What the service says of its own failures.
inline constexpr Word internalError = "internal_error";

/// What keeps the service from working at all, as the substate of its error.
inline constexpr std::array<Word, 6> serviceError{
    "none", "ipc_failure", "no_choice", "not_single_user", "no_service", "other",
};
inline constexpr std::array<Word, 4> serviceStatus{"ok", "notice", "pending", "unknown"};
inline constexpr std::array<Word, 12> interceptor{
    "ok",
    "load_failed",
    "config_failed",
    "invalid_config",
    "approval_required",
    "reboot_required",
    "disconnected",
    "upgrade_pending",
    "planned_disruption",
    "code_sign_check_failed",
    internalError,
    "unknown",
};
inline constexpr std::array<Word, 5> posture{
    "ok", "unreachable", "bad_response", internalError, "unknown",
};
inline constexpr std::array<Word, 4> keyStore{"ok", "not_supported", internalError, "unknown"};
inline constexpr std::array<Word, 7> server{
    "ok", "unreachable", "bad_client_cert", "bad_server_cert", "bad_response", internalError, "unknown",
};
inline constexpr std::array<Word, 6> certificate{
    "ok", "expired", "revoked", "rejected", internalError, "unknown",
};
inline constexpr std::array<Word, 4> certificateRenewal{"ok", "waiting", internalError, "unknown"};
inline constexpr std::array<Word, 3> fingerprint{"Matched", "Unmatched", "Unknown"};
inline constexpr std::array<Word, 4> alertCategory{
    "policy_error",
    "posture_error",
    "connectivity_error",
    "unknown",
};
inline constexpr std::array<Word, 4> protocol{"tcp", "udp", "icmp", "unknown"};

/// How an enrollment can fail, and how an unenrollment can: the substatus of its end.
inline constexpr std::array<Word, 12> enrollmentFailure{
    "cancelled",
    "invalid_choice_id",
    "invalid_enrollment_id",
    internalError,
    "initialization_error",
    "user_authentication_error",
    "device_registration_error",
    "posture_registration_error",
    "certificate_enrollment_error",
    "server_communication_error",
    "server_certificate_error",
    "posture_no_hardware_security_error",
};
inline constexpr std::array<Word, 2> unenrollmentFailure{"invalid_enrollment_id", internalError};

} // namespace words
} // namespace sim
