/// The service's documents as the plugin decodes them.
#pragma once

#include "common/api/QuillApiDefsUtil.h"
#include "tests/backend-sim/Receiver.h"

#include <string>

namespace test {

// Each fails the test where the plugin refuses the document.

StatusNotification_t decodedStatus(const std::string& json);
EnrollmentStatusNotification_t decodedEnrollmentStatus(const std::string& json);
EnrollmentAuthRequest_t decodedAuthRequest(const std::string& json);
UnenrollmentStatusNotification_t decodedUnenrollmentStatus(const std::string& json);
DataplaneNotification_t decodedDataplane(const std::string& json);

} // namespace test
