/// What the service sends, as JSON texts.
#pragma once

#include "backend-sim/Device.h"
#include "backend-sim/Scenario.h"

#include <string>
#include <string_view>

namespace sim {

/// Of which enrollment a document tells, and in whose context.
struct EnrollmentSubject {
    std::string id;
    std::string context; ///< as the request gave it
};

/// The state of a service that is still starting: nothing is known yet.
std::string initStatusDocument();
/// The real state: an error, the ways to enroll, or the enrollment.
std::string statusDocument(const Device& device);

/// The address of a login: its page is told which login it is for.
std::string loginUrl(const Login& login, std::string_view id);

/// Serves the status of an enrollment and that of an unenrollment: they have one shape.
std::string progressDocument(const EnrollmentSubject& subject, std::string_view status,
                             std::string_view substatus);
std::string enrollmentAuthRequestDocument(const EnrollmentSubject& subject, const Login& login);

/// All alerts and authentication requests; none where there is no enrollment.
std::string dataplaneDocument(const Device& device, const Login& login);

} // namespace sim
