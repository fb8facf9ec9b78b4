#include "tests/support/Documents.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(StatusNotification, EqualityCoversEveryField) {
    const StatusNotification_t original = test::enrolledStatus();
    const auto differs = [&original](auto change) {
        StatusNotification_t copy = original;
        change(copy, copy.enrollments[0]);
        return copy != original;
    };
    using Status = StatusNotification_t;
    using Entry = Enrollment_t;
    EXPECT_FALSE(differs([](Status&, Entry&) {}));
    EXPECT_TRUE(differs([](Status& status, Entry&) { status.version += '0'; }));
    EXPECT_TRUE(differs([](Status& status, Entry&) { status.substate = "x"; }));
    EXPECT_TRUE(differs([](Status& status, Entry&) { status.service_status = ServiceStatus::Pending; }));
    EXPECT_TRUE(differs([](Status& status, Entry&) { status.enrollment_choices.emplace_back(); }));
    EXPECT_TRUE(differs([](Status&, Entry& entry) { entry.enrollment_time += 1; }));
    EXPECT_TRUE(
        differs([](Status&, Entry& entry) { entry.config_sync_status.config_sync_interval_min = 1; }));
    EXPECT_TRUE(
        differs([](Status&, Entry& entry) { entry.certificate_status.certificate_urns.user_name = "x"; }));
    EXPECT_TRUE(differs(
        [](Status&, Entry& entry) { entry.dataplane_status.proxy_configs[0].status = "inactive_tnd"; }));
    EXPECT_TRUE(differs([](Status&, Entry& entry) { entry.network_status.fingerprints[0].label = "x"; }));
}

TEST(StatusNotification, EqualityMindsTheOrderOfLists) {
    StatusNotification_t status = test::enrolledStatus();
    status.enrollments.push_back(status.enrollments[0]);
    status.enrollments[1].id = "enrollment-2";
    StatusNotification_t swapped = status;
    std::swap(swapped.enrollments[0], swapped.enrollments[1]);
    EXPECT_NE(status, swapped);
}

} // namespace
