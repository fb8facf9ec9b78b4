/// The fixed texts of an enrollment under way: tile, error popup and the tile's buttons.
#pragma once

#include "presentation-plugin/tables/WrenProgressStrings.h"

#include <cstdint>

/// Each numbers its row.
enum WrenEnrollmentStringId : std::uint8_t {
    ENROLL_DEFAULT,
    ENROLL_INITIATING,
    ENROLL_CANCELLING,
    ENROLL_IN_PROGRESS,
    ENROLL_AUTH_DONE,
    ENROLL_COMPLETE,
    ENROLL_CANCELLED,
    ENROLL_INTERNAL_ERROR,
    ENROLL_INITIALIZATION_ERROR,
    ENROLL_AUTHENTICATION_ERROR,
    ENROLL_DEVICE_REGISTRATION_ERROR,
    ENROLL_POSTURE_REGISTRATION_ERROR,
    ENROLL_CERTIFICATE_ERROR,
    ENROLL_SERVER_COMMUNICATION_ERROR,
    ENROLL_SERVER_CERTIFICATE_ERROR,
    ENROLL_NO_HARDWARE_SECURITY_ERROR,
};

class WrenEnrollmentStringTable {
public:
    /// The row of the id. An id beyond the table is logged and gets the row of ENROLL_DEFAULT.
    static const WrenProgressStrings_t& GetEntry(WrenEnrollmentStringId id);
};
