/// What the backend tells while an enrollment or an unenrollment runs. Fields bear the names of their JSON
/// keys; texts are UTF-8. Equality compares all fields in order.
///
/// `enrollment_context` is the opaque text that the plugin handed in with its request: it comes back
/// unchanged, so that a notification can be matched to the request.
#pragma once

#include "common/api/EnrollmentEnumerations.h"

#include <string>

struct EnrollmentStatusNotification_t {
    std::string version;
    EnrollmentStatus status{};
    EnrollmentSubstatus substatus{};
    std::string enrollment_id;
    std::string enrollment_context;

    bool operator==(const EnrollmentStatusNotification_t&) const = default;
};

/// Asks that the user authenticate in a browser, from `start_url` until `end_url` is reached and the cookie
/// can be read there.
struct EnrollmentAuthRequest_t {
    std::string version;
    std::string enrollment_id;
    std::string start_url;
    std::string end_url;
    std::string cookie_name;
    std::string enrollment_context;

    bool operator==(const EnrollmentAuthRequest_t&) const = default;
};

struct UnenrollmentStatusNotification_t {
    std::string version;
    UnenrollmentStatus status{};
    UnenrollmentSubstatus substatus{};
    std::string enrollment_id;
    std::string enrollment_context;

    bool operator==(const UnenrollmentStatusNotification_t&) const = default;
};
