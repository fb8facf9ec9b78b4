#include "presentation-plugin/tables/WrenEnrollmentStringTable.h"

#include "presentation-plugin/tables/StringTableLookup.h"

#include <array>

namespace {

/// All buttons are hidden and disabled but for what a row says.
constexpr std::array<WrenProgressStrings_t, 16> enrollmentStrings{{
    // ENROLL_DEFAULT
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Internal Error",
     .error_message = "An internal error occurred. Contact your IT help desk."},
    // ENROLL_INITIATING
    {.tile_message = "Enrolling...", .tile_title = "Enrolling", .enroll_hidden = false},
    // ENROLL_CANCELLING
    {.tile_message = "Cancelling enrollment process. Please wait...",
     .tile_title = "Cancelling enrollment",
     .cancel_hidden = false},
    // ENROLL_IN_PROGRESS
    {.tile_message = "Enrolling...",
     .tile_title = "Enrolling",
     .cancel_hidden = false,
     .cancel_disabled = false},
    // ENROLL_AUTH_DONE
    {.tile_message = "Enrolling...", .tile_title = "Enrolling"},
    // ENROLL_COMPLETE
    {.tile_message = "Enrollment complete. Please wait...", .tile_title = "Enrollment complete"},
    // ENROLL_CANCELLED
    {.tile_message = "Enrollment cancelled.", .tile_title = "Enrollment cancelled"},
    // ENROLL_INTERNAL_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Internal Error",
     .error_message = "An internal error occurred. Contact your IT help desk."},
    // ENROLL_INITIALIZATION_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Initialization error",
     .error_message = "Unable to initialize enrollment. Contact your IT help desk."},
    // ENROLL_AUTHENTICATION_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Authentication error",
     .error_message = "Unable to verify your identity. Contact your IT help desk."},
    // ENROLL_DEVICE_REGISTRATION_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Device Registration error",
     .error_message = "Failed to register your device. Contact your IT help desk."},
    // ENROLL_POSTURE_REGISTRATION_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Posture Registration error",
     .error_message = "Failed to register with Plover Desktop. Contact your IT help desk."},
    // ENROLL_CERTIFICATE_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Certificate Registration error",
     .error_message = "Failed to obtain the enrollment certificate. Contact your IT help desk."},
    // ENROLL_SERVER_COMMUNICATION_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Server Communication error",
     .error_message = "Enrollment service is not responding. Contact your IT help desk."},
    // ENROLL_SERVER_CERTIFICATE_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "Server Certificate error",
     .error_message = "Failed to verify enrollment server certificate. Contact your IT help desk."},
    // ENROLL_NO_HARDWARE_SECURITY_ERROR
    {.tile_message = "Enrolling...",
     .tile_title = "Enrollment error",
     .error_title = "TPM Error",
     .error_message = "Failed to communicate with Trusted Platform Module (TPM) on your device. Contact your "
                      "IT help desk."},
}};
static_assert(enrollmentStrings.size() == ENROLL_NO_HARDWARE_SECURITY_ERROR + 1);

} // namespace

const WrenProgressStrings_t& WrenEnrollmentStringTable::GetEntry(WrenEnrollmentStringId id) {
    return stringTableRow(enrollmentStrings, id, "WrenEnrollmentStringTable::GetEntry");
}
