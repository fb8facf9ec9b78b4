#include "presentation-plugin/alerts/WrenAlerts.h"

#include "tests/presentation-plugin/alerts/AlertLists.h"
#include "tests/support/Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using test::alertTime;
using test::listFor;
using test::onlyAlert;
using test::priorities;
using test::remoteActionOf;
using test::statusWithFailingComponents;
using test::statusWithFailingSync;
using test::titles;
using testing::ElementsAre;
using testing::IsEmpty;

// Components

TEST(BuildAlertListOfComponents, InterceptorFailsUnlessOkOrUnknown) {
    StatusNotification_t status = test::notEnrolledStatus();
    for (std::uint32_t value = 0; value <= 11; ++value) {
        status.interceptor_connectivity = static_cast<InterceptorConnectivity>(value);
        EXPECT_EQ(listFor(status).alerts.size(), value < 2 ? 0u : 1u) << value;
    }
    const WrenAlert_t alert = onlyAlert(listFor(status));
    EXPECT_EQ(alert.priority, 4);
    EXPECT_EQ(alert.timestamp, alertTime);
    EXPECT_EQ(alert.tile_title, "Network interceptor error");
    EXPECT_EQ(alert.short_message, "");
    EXPECT_EQ(alert.toast_title, "");
    EXPECT_EQ(alert.toast_message, "");
    EXPECT_EQ(alert.action, nullptr);
}

TEST(BuildAlertListOfComponents, PostureFailsUnlessOkOrUnknown) {
    StatusNotification_t status = test::notEnrolledStatus();
    for (std::uint32_t value = 0; value <= 4; ++value) {
        status.posture_connectivity = static_cast<PostureConnectivity>(value);
        EXPECT_EQ(listFor(status).alerts.size(), value < 2 ? 0u : 1u) << value;
    }
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Plover Desktop error");
}

TEST(BuildAlertListOfComponents, KeyStoreFailsOnlyIfNotSupported) {
    StatusNotification_t status = test::notEnrolledStatus();
    for (const auto availability : {HwKeyStoreAvailability::Unknown, HwKeyStoreAvailability::Ok,
                                    HwKeyStoreAvailability::InternalError}) {
        status.hw_key_store_availability = availability;
        EXPECT_THAT(listFor(status).alerts, IsEmpty());
    }
    status.hw_key_store_availability = HwKeyStoreAvailability::NotSupported;
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "TPM Error");
}

TEST(BuildAlertListOfComponents, ComponentsAreCheckedInAnyStateButError) {
    StatusNotification_t status = statusWithFailingComponents(test::initStatus());
    EXPECT_THAT(titles(listFor(status)),
                ElementsAre("Plover Desktop error", "Network interceptor error", "TPM Error"));
}

// Servers

TEST(BuildAlertListOfComponents, SyncThatHasWorkedHasAGraceOfFourFailures) {
    EXPECT_THAT(listFor(statusWithFailingSync(0, 1)).alerts, IsEmpty());
    EXPECT_THAT(listFor(statusWithFailingSync(4, 1)).alerts, IsEmpty());
    EXPECT_THAT(titles(listFor(statusWithFailingSync(5, 1))), ElementsAre("Configuration sync error"));
    EXPECT_THAT(titles(listFor(statusWithFailingSync(4294967295u, 1))),
                ElementsAre("Configuration sync error"));
}

TEST(BuildAlertListOfComponents, SyncThatHasNeverWorkedHasNoGrace) {
    EXPECT_THAT(priorities(listFor(statusWithFailingSync(0, 0))), ElementsAre(6));
    EXPECT_THAT(priorities(listFor(statusWithFailingSync(4, 0))), ElementsAre(6));
    EXPECT_THAT(priorities(listFor(statusWithFailingSync(5, 0))), ElementsAre(6));
}

TEST(BuildAlertListOfComponents, SyncFailuresAloneAreNoAlert) {
    StatusNotification_t status = statusWithFailingSync(9, 0);
    for (const auto connectivity : {ServerConnectivity::Unknown, ServerConnectivity::Ok}) {
        status.enrollments[0].config_sync_status.server_connectivity = connectivity;
        EXPECT_THAT(listFor(status).alerts, IsEmpty());
    }
}

TEST(BuildAlertListOfComponents, DataplaneServerFailsUnlessOkOrUnknown) {
    StatusNotification_t status = test::enrolledStatus();
    for (std::uint32_t value = 0; value <= 6; ++value) {
        status.enrollments[0].dataplane_status.server_connectivity = static_cast<ServerConnectivity>(value);
        EXPECT_EQ(listFor(status).alerts.size(), value < 2 ? 0u : 1u) << value;
    }
    EXPECT_EQ(onlyAlert(listFor(status)).tile_title, "Server connectivity error");
    EXPECT_EQ(onlyAlert(listFor(status)).priority, 7);
}

// Dataplane alerts

WrenAlert_t alertFor(const DataplaneAlert_t& source) {
    DataplaneNotification_t dataplane = test::dataplane();
    dataplane.dataplane_alerts = {source};
    return onlyAlert(listFor(test::enrolledStatus(), dataplane));
}

DataplaneAlert_t dataplaneAlert() { return test::dataplane(1).dataplane_alerts[0]; }

TEST(BuildAlertListOfComponents, DataplaneAlertSpeaksForItself) {
    const WrenAlert_t alert = alertFor(dataplaneAlert());
    EXPECT_EQ(alert.timestamp, 17000000010000000);
    EXPECT_EQ(alert.tile_message, "Tile 1");
    EXPECT_EQ(alert.tile_title, "Access blocked");
    EXPECT_EQ(alert.title, "Alert 1");
    EXPECT_EQ(alert.short_message, "Short 1");
    EXPECT_EQ(alert.long_message, "Long 1");
    EXPECT_EQ(alert.toast_title, "Access blocked");
    EXPECT_EQ(alert.toast_message, "Toast 1");
    EXPECT_EQ(remoteActionOf(alert).label, "Help 1");
    EXPECT_EQ(remoteActionOf(alert).url, "https://help.example/1");
}

TEST(BuildAlertListOfComponents, CategoryChoosesTheRow) {
    DataplaneAlert_t source = dataplaneAlert();
    const auto priorityOf = [&source](DataplaneAlertCategory category) {
        source.category = category;
        return alertFor(source).priority;
    };
    EXPECT_EQ(priorityOf(DataplaneAlertCategory::PostureError), 8);
    EXPECT_EQ(priorityOf(DataplaneAlertCategory::PolicyError), 9);
    EXPECT_EQ(priorityOf(DataplaneAlertCategory::ConnectivityError), 10);
    EXPECT_EQ(priorityOf(DataplaneAlertCategory::Unknown), 10);
    EXPECT_EQ(priorityOf(static_cast<DataplaneAlertCategory>(9)), 10);
}

TEST(BuildAlertListOfComponents, EachEmptyTextFallsBackToItsRow) {
    DataplaneAlert_t source = dataplaneAlert();
    source.tile_message = "";
    EXPECT_EQ(alertFor(source).tile_message,
              "An issue is affecting secure resource access. Please review the provided details.");
    EXPECT_EQ(alertFor(source).title, "Alert 1");

    source = dataplaneAlert();
    source.title = "";
    EXPECT_EQ(alertFor(source).title, "Access blocked");
    EXPECT_EQ(alertFor(source).short_message, "Short 1");

    source = dataplaneAlert();
    source.short_message = "";
    EXPECT_EQ(alertFor(source).short_message, "");
    EXPECT_EQ(alertFor(source).long_message, "Long 1");

    source = dataplaneAlert();
    source.long_message = "";
    EXPECT_EQ(alertFor(source).long_message,
              "Access to secure resource is blocked. Contact your IT help desk.");
    EXPECT_EQ(alertFor(source).toast_message, "Toast 1");

    source = dataplaneAlert();
    source.toast_message = "";
    EXPECT_EQ(alertFor(source).toast_message,
              "Access to secure resource is blocked. Contact your IT help desk.");
    EXPECT_EQ(alertFor(source).tile_message, "Tile 1");
}

TEST(BuildAlertListOfComponents, AddressWithoutLabelGetsTheRowsLabel) {
    DataplaneAlert_t source = dataplaneAlert();
    source.url_label = "";
    EXPECT_EQ(remoteActionOf(alertFor(source)).label, "See Details");
    EXPECT_EQ(remoteActionOf(alertFor(source)).url, "https://help.example/1");
}

TEST(BuildAlertListOfComponents, DataplaneAlertWithoutAddressHasNoAction) {
    DataplaneAlert_t source = dataplaneAlert();
    source.url = "";
    EXPECT_EQ(alertFor(source).action, nullptr);
}

} // namespace
