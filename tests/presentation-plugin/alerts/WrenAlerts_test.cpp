#include "presentation-plugin/alerts/WrenAlerts.h"

#include "tests/presentation-plugin/alerts/AlertLists.h"
#include "tests/support/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using test::alertTime;
using test::expectNoSectionTexts;
using test::listFor;
using test::localActionOf;
using test::onlyAlert;
using test::priorities;
using test::statusWithCertificate;
using test::statusWithFailingComponents;
using test::titles;
using testing::ElementsAre;
using testing::IsEmpty;

// Without anything to say

TEST(BuildAlertList, IsEmptyWithoutStatus) {
    const auto dataplane = std::make_shared<DataplaneNotification_t>(test::dataplane(2, 2));
    EXPECT_EQ(buildAlertList(nullptr, dataplane, alertTime), WrenAlertList_t());
    EXPECT_EQ(buildAlertList(nullptr, nullptr, alertTime), WrenAlertList_t());
}

TEST(BuildAlertList, IsEmptyIfAllIsWell) {
    EXPECT_EQ(listFor(test::enrolledStatus()), WrenAlertList_t());
    EXPECT_EQ(listFor(test::enrolledStatus(), test::dataplane()), WrenAlertList_t());
    EXPECT_EQ(listFor(test::notEnrolledStatus()), WrenAlertList_t());
    EXPECT_EQ(listFor(test::initStatus()), WrenAlertList_t());
}

TEST(BuildAlertList, GivesEqualListsForEqualRecords) {
    const auto status = statusWithFailingComponents(test::enrolledStatus());
    EXPECT_EQ(listFor(status, test::dataplane(3)), listFor(status, test::dataplane(3)));
    EXPECT_NE(listFor(status, test::dataplane(3)), listFor(status, test::dataplane(2)));
}

// The error state

TEST(BuildAlertList, ErrorStateIsTheOneAlertOfItsSubstate) {
    const struct {
        const char* substate;
        const char* tile_title;
        const char* short_message;
        const char* long_message;
    } rows[] = {
        {"ipc_failure", "Kestrel Suite error", "Try restarting your computer.",
         "Cannot communicate with the Kestrel Suite service. Try restarting your computer. If this problem "
         "persists, contact your IT help desk."},
        {"no_choice", "Kestrel Suite error", "Contact your IT help desk.",
         "No enrollment choice is available, contact your IT help desk."},
        {"not_single_user", "Multiple users error", "Log out other users to continue.",
         "Multiple users are logged into this device. Log out other users to continue. If this problem "
         "persists, contact your IT help desk."},
        {"no_service", "Wren Gate service error", "Enable Wren Gate app in System Settings.",
         "You need to enable the Norvane Kestrel Suite - Wren Gate app in System Settings. If this error "
         "persists, contact your IT help desk."},
        {"x", "Kestrel Suite error", "Contact your IT help desk.",
         "Unexpected Kestrel Suite error, contact your IT help desk."},
        {"", "Kestrel Suite error", "Contact your IT help desk.",
         "Unexpected Kestrel Suite error, contact your IT help desk."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.substate);
        const WrenAlert_t alert = onlyAlert(listFor(test::errorStatus(row.substate)));
        EXPECT_EQ(alert.priority, 0);
        EXPECT_EQ(alert.type, 0);
        EXPECT_EQ(alert.timestamp, alertTime);
        EXPECT_EQ(alert.tile_title, row.tile_title);
        EXPECT_EQ(alert.short_message, row.short_message);
        EXPECT_EQ(alert.long_message, row.long_message);
        EXPECT_EQ(alert.action, nullptr);
    }
}

TEST(BuildAlertList, ErrorStateWithANoticeOfTheServiceIsNoService) {
    StatusNotification_t status = test::errorStatus("x");
    status.service_status = ServiceStatus::Notice;
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Wren Gate service error");
    status.service_status = ServiceStatus::Ok;
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Kestrel Suite error");
    status.service_status = ServiceStatus::Pending;
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Kestrel Suite error");
}

TEST(BuildAlertList, KnownSubstatesComeBeforeANoticeOfTheService) {
    StatusNotification_t status = test::errorStatus("not_single_user");
    status.service_status = ServiceStatus::Notice;
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Multiple users error");
}

TEST(BuildAlertList, ErrorStateHidesAllElse) {
    StatusNotification_t status =
        statusWithFailingComponents(statusWithCertificate(CertificateState::Expired));
    status.state = "error";
    EXPECT_THAT(titles(listFor(status, test::dataplane(2, 2))), ElementsAre("Kestrel Suite error"));
}

TEST(BuildAlertList, StateErrorIsComparedExactly) {
    StatusNotification_t status = test::errorStatus();
    status.state = "Error";
    EXPECT_THAT(listFor(status).alerts, IsEmpty());
}

TEST(BuildAlertList, SubstateAloneIsNoError) {
    StatusNotification_t status = test::enrolledStatus();
    status.substate = "ipc_failure";
    EXPECT_THAT(listFor(status).alerts, IsEmpty());
}

// Renewal

TEST(BuildAlertList, CertificateInNeedOfRenewalIsTheOneAlert) {
    const struct {
        CertificateState state;
        const char* message;
    } rows[] = {
        {CertificateState::Expired,
         "Please verify your identity to renew your expired enrollment and continue access to secure "
         "resources."},
        {CertificateState::Revoked,
         "Please verify your identity to renew your suspended enrollment and continue access to secure "
         "resources."},
        {CertificateState::Rejected,
         "Please verify your identity to renew your enrollment and continue access to secure resources."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        const WrenAlert_t alert = onlyAlert(listFor(statusWithCertificate(row.state)));
        EXPECT_EQ(alert.type, 1);
        EXPECT_EQ(alert.priority, 1);
        EXPECT_EQ(alert.timestamp, alertTime);
        EXPECT_EQ(alert.tile_message, "Verify your identity.");
        EXPECT_EQ(alert.tile_title, "Verify your identity");
        EXPECT_EQ(alert.title, "Verify your identity");
        EXPECT_EQ(alert.short_message, row.message);
        EXPECT_EQ(alert.long_message,
                  row.message +
                      std::string(" Click Continue to sign in and follow the authentication prompts."));
        EXPECT_EQ(alert.toast_title, "Verify your identity");
        EXPECT_EQ(alert.toast_message, row.message);
        const WrenAlertLocalAction& action = localActionOf(alert);
        EXPECT_EQ(action.label, "Continue");
        EXPECT_EQ(action.title, "Verify your identity");
        EXPECT_EQ(action.description, "Enrollment will continue in a new window.");
        EXPECT_EQ(action.type, "re-enroll");
        EXPECT_EQ(action.value, "enrollment-1");
    }
}

TEST(BuildAlertList, OtherCertificateStatesNeedNoRenewal) {
    for (const CertificateState state :
         {CertificateState::Unknown, CertificateState::Ok, CertificateState::InternalError}) {
        EXPECT_THAT(listFor(statusWithCertificate(state)).alerts, IsEmpty());
    }
}

TEST(BuildAlertList, RenewalHidesAuthRequestsAndFailingComponents) {
    StatusNotification_t status =
        statusWithFailingComponents(statusWithCertificate(CertificateState::Revoked));
    const WrenAlertList_t list = listFor(status, test::dataplane(2, 2));
    EXPECT_THAT(priorities(list), ElementsAre(1));
}

TEST(BuildAlertList, RenewalThatIsNotAllowedIsNoAlert) {
    StatusNotification_t status = statusWithCertificate(CertificateState::Revoked);
    status.enrollments[0].reenroll_allowed = false;
    EXPECT_THAT(listFor(status).alerts, IsEmpty());
    EXPECT_THAT(priorities(listFor(status, test::dataplane(0, 1))), ElementsAre(2));
    EXPECT_THAT(priorities(listFor(statusWithFailingComponents(status), test::dataplane(1))),
                ElementsAre(3, 4, 5, 9));
}

TEST(BuildAlertList, OnlyTheFirstEnrollmentCounts) {
    StatusNotification_t status = test::enrolledStatus();
    status.enrollments.push_back(statusWithCertificate(CertificateState::Expired).enrollments[0]);
    status.enrollments[1].config_sync_status.server_connectivity = ServerConnectivity::Unreachable;
    status.enrollments[1].config_sync_status.fail_cnt_since_last_sync_success = 9;
    status.enrollments[1].dataplane_status.server_connectivity = ServerConnectivity::Unreachable;
    EXPECT_THAT(listFor(status).alerts, IsEmpty());
}

// Authentication for flows

TEST(BuildAlertList, EachAuthRequestIsAnAlert) {
    const WrenAlert_t alert = onlyAlert(listFor(test::enrolledStatus(), test::dataplane(0, 1)));
    const char* message = "Your organization requires you to verify your identity so that you can securely "
                          "access corporate resources.";
    EXPECT_EQ(alert.type, 2);
    EXPECT_EQ(alert.priority, 2);
    EXPECT_EQ(alert.timestamp, 17000000010000000);
    EXPECT_EQ(alert.tile_message, "Verify your identity to access corporate resources.");
    EXPECT_EQ(alert.tile_title, "Verify your identity");
    EXPECT_EQ(alert.title, "Verify your identity");
    EXPECT_EQ(alert.short_message, message);
    EXPECT_EQ(alert.long_message, message);
    EXPECT_EQ(alert.toast_title, "Verify your identity");
    EXPECT_EQ(alert.toast_message, message);
    const WrenAlertLocalAction& action = localActionOf(alert);
    EXPECT_EQ(action.label, "Verify");
    EXPECT_EQ(action.title, "Verify your identity");
    EXPECT_EQ(action.description, "Authentication will continue in a new window.");
    EXPECT_EQ(action.type, "dataplane-auth");
    EXPECT_EQ(action.value, "context-1");
}

TEST(BuildAlertList, AuthRequestsKeepTheirOrderAndGetNoSectionTexts) {
    const WrenAlertList_t list = listFor(test::enrolledStatus(), test::dataplane(0, 3));
    ASSERT_EQ(list.alerts.size(), 3u);
    EXPECT_EQ(localActionOf(list.alerts[0]).value, "context-1"); // the oldest: sorting would put it last
    EXPECT_EQ(localActionOf(list.alerts[1]).value, "context-2");
    EXPECT_EQ(localActionOf(list.alerts[2]).value, "context-3");
    expectNoSectionTexts(list);
}

TEST(BuildAlertList, AuthRequestsHideFailingComponentsAndDataplaneAlerts) {
    const auto status = statusWithFailingComponents(test::enrolledStatus());
    EXPECT_THAT(priorities(listFor(status, test::dataplane(3, 2))), ElementsAre(2, 2));
}

TEST(BuildAlertList, DataplaneIsIgnoredWithoutEnrollment) {
    EXPECT_THAT(listFor(test::notEnrolledStatus(), test::dataplane(2, 2)).alerts, IsEmpty());
}

} // namespace
