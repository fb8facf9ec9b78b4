#include "tests/backend-sim/Decoding.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <gtest/gtest.h>

#include <exception>
#include <system_error>

namespace test {
namespace {

template <class Record>
Record decoded(const std::string& json, Record (*decode)(boost::json::value, std::error_code&)) {
    try {
        std::error_code error;
        Record record = decode(boost::json::parse(json), error);
        EXPECT_FALSE(error) << json;
        return record;
    } catch (const std::exception& refusal) {
        ADD_FAILURE() << refusal.what() << ": " << json;
        return {};
    }
}

} // namespace

StatusNotification_t decodedStatus(const std::string& json) {
    return decoded(json, StatusNotificationFromJson);
}
EnrollmentStatusNotification_t decodedEnrollmentStatus(const std::string& json) {
    return decoded(json, EnrollmentStatusNotificationFromJson);
}
EnrollmentAuthRequest_t decodedAuthRequest(const std::string& json) {
    return decoded(json, EnrollmentAuthRequestFromJson);
}
UnenrollmentStatusNotification_t decodedUnenrollmentStatus(const std::string& json) {
    return decoded(json, UnenrollmentStatusNotificationFromJson);
}
DataplaneNotification_t decodedDataplane(const std::string& json) {
    return decoded(json, DataplaneNotificationFromJson);
}

} // namespace test
