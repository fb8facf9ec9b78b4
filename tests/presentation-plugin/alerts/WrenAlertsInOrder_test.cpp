#include "presentation-plugin/alerts/WrenAlerts.h"

#include "tests/presentation-plugin/alerts/AlertLists.h"
#include "tests/support/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using test::expectNoSectionTexts;
using test::listFor;
using test::priorities;
using test::statusWithFailingComponents;
using test::statusWithFailingSync;
using testing::ElementsAre;

// Order

TEST(BuildAlertListInOrder, SortsByPriority) {
    StatusNotification_t status = statusWithFailingComponents(statusWithFailingSync(5, 1));
    status.enrollments[0].dataplane_status.server_connectivity = ServerConnectivity::BadServerCert;
    DataplaneNotification_t dataplane = test::dataplane(3);
    dataplane.dataplane_alerts[0].category = DataplaneAlertCategory::Unknown;
    dataplane.dataplane_alerts[2].category = DataplaneAlertCategory::PostureError;
    EXPECT_THAT(priorities(listFor(status, dataplane)), ElementsAre(3, 4, 5, 6, 7, 8, 9, 10));
}

TEST(BuildAlertListInOrder, NewerAlertsOfOnePriorityComeFirst) {
    const WrenAlertList_t list = listFor(test::enrolledStatus(), test::dataplane(3));
    ASSERT_EQ(list.alerts.size(), 3u);
    EXPECT_EQ(list.alerts[0].title, "Alert 3");
    EXPECT_EQ(list.alerts[1].title, "Alert 2");
    EXPECT_EQ(list.alerts[2].title, "Alert 1");
}

TEST(BuildAlertListInOrder, PriorityOutdoesTime) {
    StatusNotification_t status = test::enrolledStatus();
    status.posture_connectivity = PostureConnectivity::BadResponse;
    EXPECT_THAT(priorities(listFor(status, test::dataplane(1))), ElementsAre(3, 9));
}

TEST(BuildAlertListInOrder, AlertsOfOnePriorityAndTimeKeepTheirOrder) {
    DataplaneNotification_t dataplane = test::dataplane(40);
    for (DataplaneAlert_t& alert : dataplane.dataplane_alerts) {
        alert.timestamp = 5;
    }
    const WrenAlertList_t list = listFor(test::enrolledStatus(), dataplane);
    ASSERT_EQ(list.alerts.size(), 40u);
    for (std::size_t index = 0; index < list.alerts.size(); ++index) {
        EXPECT_EQ(list.alerts[index].title, "Alert " + std::to_string(index + 1));
    }
}

// The texts around several alerts

TEST(BuildAlertListInOrder, SeveralAlertsBeforeEnrollmentGetTheirSection) {
    const WrenAlertList_t list = listFor(statusWithFailingComponents(test::notEnrolledStatus()));
    EXPECT_EQ(list.alerts.size(), 3u);
    EXPECT_EQ(list.section_title, "Cannot begin enrollment");
    EXPECT_EQ(list.section_description, "Several issues are preventing enrollment. Please take a moment to "
                                        "review the detailed information provided.");
    EXPECT_EQ(list.section_action_label, "See Details");
    EXPECT_EQ(list.list_title, "Cannot begin enrollment");
    EXPECT_EQ(list.list_description, "Contact your IT help desk about the following errors.");
}

TEST(BuildAlertListInOrder, SeveralAlertsOfAnEnrollmentGetTheirSection) {
    const WrenAlertList_t list = listFor(test::enrolledStatus(), test::dataplane(2));
    EXPECT_EQ(list.section_title, "Issues affecting secure resource access");
    EXPECT_EQ(list.section_description,
              "We have identified some issues that may affect your access to secure resources. Please take a "
              "moment to review the detailed information provided.");
    EXPECT_EQ(list.section_action_label, "See Details");
    EXPECT_EQ(list.list_title, "Issues affecting secure resource access");
    EXPECT_EQ(list.list_description, "Resolve the following issues or contact your IT help desk.");
}

TEST(BuildAlertListInOrder, OneAlertNeverGetsASection) {
    StatusNotification_t status = test::notEnrolledStatus();
    status.posture_connectivity = PostureConnectivity::Unreachable;
    expectNoSectionTexts(listFor(status));
    expectNoSectionTexts(listFor(test::enrolledStatus(), test::dataplane(1)));
}

TEST(BuildAlertListInOrder, StatesOtherThanActiveGetNoSection) {
    StatusNotification_t status = statusWithFailingComponents(test::enrolledStatus());
    status.state = "inactive_tnd";
    const WrenAlertList_t list = listFor(status);
    EXPECT_THAT(priorities(list), ElementsAre(3, 4, 5)); // sorted all the same
    expectNoSectionTexts(list);
}

TEST(BuildAlertListInOrder, BothOrNeitherOfChoicesAndEnrollmentsGetNoSection) {
    StatusNotification_t status = statusWithFailingComponents(test::enrolledStatus());
    status.enrollment_choices = test::notEnrolledStatus().enrollment_choices;
    expectNoSectionTexts(listFor(status));
    status.enrollment_choices.clear();
    status.enrollments.clear();
    expectNoSectionTexts(listFor(status));
    EXPECT_EQ(listFor(status).alerts.size(), 3u);
}

} // namespace
