#include "common/api/QuillApiDefsUtil.h"
#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

namespace json = boost::json;

/// Documents that leave out, shorten and lengthen what others hold.
std::vector<json::value> documents() {
    const json::value full = test::enrolledStatusDocument();
    std::vector<json::value> all{full, test::initStatusDocument(), test::errorStatusDocument(),
                                 test::notEnrolledStatusDocument(), full};
    for (const char* place : {"/substate", "/service_status", "/enrollments/0/state",
                              "/enrollments/0/substate", "/enrollments/0/id", "/enrollments/0/type",
                              "/enrollments/0/label", "/enrollments/0/enrollment_time",
                              "/enrollments/0/unenroll_allowed", "/enrollments/0/reenroll_allowed",
                              "/enrollments/0/config_sync_status", "/enrollments/0/certificate_status",
                              "/enrollments/0/dataplane_status", "/enrollments/0/network_status"}) {
        all.push_back(test::without(full, place));
        all.push_back(full);
    }
    for (const char* place : {"/interceptor_connectivity", "/posture_connectivity",
                              "/hw_key_store_availability", "/service_status", "/substate"}) {
        all.push_back(test::without(test::with(full, "/state", "paused"), place));
        all.push_back(full);
    }
    all.push_back(test::with(full, "/enrollments", json::array{}));
    all.push_back(test::with(full, "/enrollments/0/dataplane_status/proxy_configs", json::array{}));
    all.push_back(test::with(full, "/enrollments/0/network_status/fingerprints", json::array{}));
    all.push_back(test::with(full, "/enrollments", json::array{json::object{}, json::object{}}));
    all.push_back(test::with(test::notEnrolledStatusDocument(), "/enrollment_choices",
                             json::array{json::object{}, json::object{}}));
    return all;
}

TEST(ReadStatusNotification, UsedRecordReadsAsANewOne) {
    const std::vector<json::value> all = documents();
    StatusNotification_t used;
    for (std::size_t round = 0; round < 2; ++round) {
        for (const json::value& document : all) {
            std::error_code error;
            const StatusNotification_t fresh = StatusNotificationFromJson(document, error);
            ASSERT_FALSE(error) << test::textOf(document);
            readStatusNotification(document, error, used);
            ASSERT_FALSE(error);
            EXPECT_EQ(used, fresh) << test::textOf(document);
        }
    }
}

TEST(ReadStatusNotification, RecordLeftByAFaultReadsAsANewOne) {
    StatusNotification_t used = test::enrolledStatus();
    std::error_code error;
    EXPECT_THROW(
        readStatusNotification(
            test::with(test::enrolledStatusDocument(), "/enrollments/0/certificate_status", 1), error, used),
        std::invalid_argument);
    readStatusNotification(test::without(test::enrolledStatusDocument(), "/version"), error, used);
    EXPECT_TRUE(error);
    readStatusNotification(test::notEnrolledStatusDocument(), error, used);
    EXPECT_FALSE(error);
    EXPECT_EQ(used, test::notEnrolledStatus());
}

} // namespace
