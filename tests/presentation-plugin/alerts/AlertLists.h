/// What the tests of the derived alerts have in common.
#pragma once

#include "presentation-plugin/alerts/WrenAlerts.h"
#include "tests/support/Documents.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// The lists' argument of that name.
inline constexpr QuillTimePoint alertTime = 77;

inline WrenAlertList_t listFor(const StatusNotification_t& status) {
    return buildAlertList(std::make_shared<StatusNotification_t>(status), nullptr, alertTime);
}

inline WrenAlertList_t listFor(const StatusNotification_t& status, const DataplaneNotification_t& dataplane) {
    return buildAlertList(std::make_shared<StatusNotification_t>(status),
                          std::make_shared<DataplaneNotification_t>(dataplane), alertTime);
}

/// The alerts by the heading and the priority of their row.
inline std::vector<std::string> titles(const WrenAlertList_t& list) {
    std::vector<std::string> texts;
    for (const WrenAlert_t& alert : list.alerts) {
        texts.push_back(alert.tile_title);
    }
    return texts;
}

inline std::vector<int> priorities(const WrenAlertList_t& list) {
    std::vector<int> numbers;
    for (const WrenAlert_t& alert : list.alerts) {
        EXPECT_EQ(alert.type, alert.priority);
        numbers.push_back(alert.priority);
    }
    return numbers;
}

inline void expectNoSectionTexts(const WrenAlertList_t& list) {
    EXPECT_EQ(list.section_title, "");
    EXPECT_EQ(list.section_description, "");
    EXPECT_EQ(list.section_action_label, "");
    EXPECT_EQ(list.list_title, "");
    EXPECT_EQ(list.list_description, "");
}

/// The only alert of the list.
inline WrenAlert_t onlyAlert(const WrenAlertList_t& list) {
    EXPECT_EQ(list.alerts.size(), 1u);
    expectNoSectionTexts(list);
    return list.alerts.empty() ? WrenAlert_t() : list.alerts.front();
}

inline const WrenAlertLocalAction& localActionOf(const WrenAlert_t& alert) {
    return dynamic_cast<const WrenAlertLocalAction&>(*alert.action);
}

inline const WrenAlertRemoteAction& remoteActionOf(const WrenAlert_t& alert) {
    return dynamic_cast<const WrenAlertRemoteAction&>(*alert.action);
}

/// An enrollment whose certificate needs the user.
inline StatusNotification_t statusWithCertificate(CertificateState state) {
    StatusNotification_t status = enrolledStatus();
    status.enrollments[0].certificate_status.certificate_state = state;
    return status;
}

/// Every component that can fail on its own does.
inline StatusNotification_t statusWithFailingComponents(StatusNotification_t status) {
    status.interceptor_connectivity = InterceptorConnectivity::Disconnected;
    status.posture_connectivity = PostureConnectivity::Unreachable;
    status.hw_key_store_availability = HwKeyStoreAvailability::NotSupported;
    return status;
}

/// A configuration sync that cannot reach its server, after so many failures since `lastSuccess`.
inline StatusNotification_t statusWithFailingSync(std::uint32_t failures, QuillTimePoint lastSuccess) {
    StatusNotification_t status = enrolledStatus();
    ConfigSyncStatus_t& sync = status.enrollments[0].config_sync_status;
    sync.server_connectivity = ServerConnectivity::Unreachable;
    sync.fail_cnt_since_last_sync_success = failures;
    sync.last_config_sync_success = lastSuccess;
    return status;
}

} // namespace test
