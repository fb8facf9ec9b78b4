/// What the service knows of its device, and how that reads on the wire.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sim {

/// The one way in which this device may enroll.
inline constexpr std::string_view enrollmentChoiceId = "choice-1";

struct DeviceState {
    bool isEnrolled = false;
    std::string enrollmentId;         ///< of the enrollment that exists
    std::int64_t enrollmentTime = 0;  ///< seconds since 1970
    std::uint64_t lastConfigSync = 0; ///< seconds since 1970
};

/// The one enrollment that is being made.
struct EnrollmentProgress {
    std::string id;
    std::string context; ///< as the request gave it
};

// Documents, as JSON texts.

/// The state of a service that is still starting.
std::string initStatusDocument();
std::string statusDocument(const DeviceState& device);
/// Serves the status of an enrollment and that of an unenrollment: they have one shape.
std::string enrollmentStatusDocument(const EnrollmentProgress& progress, std::string_view status,
                                     std::string_view substatus);
std::string enrollmentAuthRequestDocument(const EnrollmentProgress& progress);
/// With nothing to show and nothing to ask.
std::string dataplaneDocument();

} // namespace sim
