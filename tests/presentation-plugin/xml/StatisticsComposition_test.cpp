#include "presentation-plugin/xml/StatisticsComposition.h"

#include "common/PluginIdentity.h"
#include "common/api/StatusNotification.h"
#include "tests/support/Documents.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

using Row = std::pair<std::string, std::string>; ///< id and value

constexpr std::int64_t secondsOf2024 = 1704067200; // 2024-01-01 00:00:00 UTC

class Statistics : public testing::Test {
protected:
    const test::ScopedEnvironment zone{"TZ", "UTC0"};

    template <class Compose, class... Arguments>
    static std::string composed(UiNoticeType type, Compose compose, const Arguments&... arguments) {
        XmlUINotice notice(type, nullptr, pluginIdentity::identity);
        compose(notice, arguments...);
        return test::maskTimestamps(notice.serialize());
    }

    static std::string overview(const StatusNotification_t& status) {
        return composed(UiNoticeType::Update, composeStatsOverview, status);
    }
    static std::string details(const StatusNotification_t& status) {
        return composed(UiNoticeType::Update, composeStatsDetails, status);
    }
};

std::string row(const std::string& id, const std::string& title, const std::string& value) {
    return "\t\t\t<listrow id=\"" + id + "\">\n\t\t\t\t<listrowcolumn label=\"" + title +
           "\"/>\n\t\t\t\t<listrowcolumn label=\"" + value + "\"/>\n\t\t\t</listrow>\n";
}

std::string group(const std::string& id, const std::string& title, const std::string& rows) {
    return "\t\t<listgroup id=\"" + id + "\">\n\t\t\t<listrowcolumn label=\"" + title + "\"/>\n" + rows +
           "\t\t</listgroup>\n";
}

std::string notice(const char* type, const std::string& id, const char* updateRows,
                   const std::string& groups) {
    return std::string("<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"") + type +
           "\" timestamp=\"*\">\n\t<outlinelistbox id=\"" + id + "\" updaterows=\"" + updateRows +
           "\" num_columns=\"2\">\n" + groups + "\t</outlinelistbox>\n</vtguiNotice>\n";
}

std::string overviewNotice(const char* type, const char* updateRows, const std::string& title,
                           const std::string& cert, const std::string& sync, const std::string& proxy,
                           const std::string& interceptor) {
    return notice(type, "overview_stat_outlinelistbox", updateRows,
                  group("stat_overview_group_quill", title,
                        row("stat_overview_cert_status", "Certificate Status:", cert) +
                            row("stat_overview_config_sync_status", "Config Sync Status:", sync) +
                            row("stat_overview_proxy_status", "Proxy Status:", proxy) +
                            row("stat_overview_interceptor_status", "Interceptor Status:", interceptor)));
}

/// The five groups that are always there, with the values in the order of the rows.
std::string fixedGroups(const std::vector<std::string>& v) {
    std::size_t next = 0;
    const auto value = [&] { return v.at(next++); };
    const auto rowsOf = [&](std::initializer_list<std::pair<const char*, const char*>> rows) {
        std::string text;
        for (const auto& [id, title] : rows) {
            text += row(id, title, value());
        }
        return text;
    };
    std::string groups = group("stat_group_general_info", "General:",
                               rowsOf({{"stat_enrollment_time", "Enrollment Time:"},
                                       {"stat_proxy_connectivity", "Proxy Connectivity Status:"}}));
    groups += group("stat_group_config_sync_info", "Config Sync",
                    rowsOf({{"stat_server_connectivity", "Server Connectivity:"},
                            {"stat_sync_interval_min", "Sync Interval (minutes):"},
                            {"stat_last_sync_success_time", "Last Successful Sync:"},
                            {"stat_fail_cnt_since_last_sync_success", "Failed Attempts Since Last Sync:"}}));
    groups += group("stat_group_certificate_info", "Norvane Gatehouse Certificate",
                    rowsOf({{"stat_certificate_state", "State:"},
                            {"stat_expiration_time", "Expiration Time:"},
                            {"stat_certificate_renewal_status", "Renewal Status:"},
                            {"stat_last_renewal_attempt_time", "Last Renewal Attempt:"},
                            {"stat_failed_renewal_attempt_cnt", "Failed Attempts to Renew Certificate:"},
                            {"stat_org_id", "Organization ID:"},
                            {"stat_user_id", "User ID:"},
                            {"stat_plv_id", "Plover Desktop ID:"},
                            {"stat_quill_device_id", "Device ID:"},
                            {"stat_user_name", "Username:"}}));
    groups += group("stat_group_active_flow_info", "Active Flow Counts:",
                    rowsOf({{"stat_active_flow_cnt_udp", "Active UDP Flows:"},
                            {"stat_active_flow_cnt_tcp", "Active TCP Flows:"}}));
    groups += group("stat_group_cumulative_info", "Cumulative Flow Counts:",
                    rowsOf({{"stat_flow_cnt_udp", "UDP Flows:"},
                            {"stat_flow_cnt_tcp", "TCP Flows:"},
                            {"stat_allowed_flow_cnt_udp", "Allowed UDP Flows:"},
                            {"stat_allowed_flow_cnt_tcp", "Allowed TCP Flows:"},
                            {"stat_blocked_flow_cnt_udp", "Blocked UDP Flows:"},
                            {"stat_blocked_flow_cnt_tcp", "Blocked TCP Flows:"},
                            {"stat_authenticated_flow_cnt_udp", "Authenticated UDP Flows:"},
                            {"stat_authenticated_flow_cnt_tcp", "Authenticated TCP Flows:"}}));
    EXPECT_EQ(next, v.size());
    return groups;
}

/// An enrolled status in which every number and text is different.
StatusNotification_t fullStatus() {
    StatusNotification_t status;
    status.state = "active";
    status.interceptor_connectivity = InterceptorConnectivity::DisconnectedUpgradePending;
    Enrollment_t enrollment;
    enrollment.enrollment_time = secondsOf2024 * 10'000'000;
    enrollment.config_sync_status = {30, (secondsOf2024 + 60) * 10'000'000, 31,
                                     ServerConnectivity::Unreachable};
    auto& certificate = enrollment.certificate_status;
    certificate.certificate_expiration_time = (secondsOf2024 + 3600) * 10'000'000;
    certificate.last_renewal_attempt_time = (secondsOf2024 + 86400) * 10'000'000;
    certificate.failed_renewal_attempt_cnt = 32;
    certificate.certificate_state = CertificateState::Revoked;
    certificate.certificate_renewal_status = CertificateRenewalStatus::Waiting;
    certificate.certificate_urns = {"org", "user", "plv", "quill", "name"};
    auto& dataplane = enrollment.dataplane_status;
    dataplane.flow_cnt_udp = 1;
    dataplane.flow_cnt_tcp = 2;
    dataplane.active_flow_cnt_udp = 3;
    dataplane.active_flow_cnt_tcp = 4;
    dataplane.allowed_flow_cnt_udp = 5;
    dataplane.allowed_flow_cnt_tcp = 6;
    dataplane.blocked_flow_cnt_udp = 7;
    dataplane.blocked_flow_cnt_tcp = 8;
    dataplane.authenticated_flow_cnt_udp = 9;
    dataplane.authenticated_flow_cnt_tcp = 4294967295u;
    dataplane.server_connectivity = ServerConnectivity::BadClientCert;
    status.enrollments.push_back(enrollment);
    return status;
}

const std::vector<std::string> fullValues{"01/01/24 00:00:00",
                                          "BadClientCert",
                                          "Unreachable",
                                          "30",
                                          "01/01/24 00:01:00",
                                          "31",
                                          "Revoked",
                                          "01/01/24 01:00:00",
                                          "Waiting",
                                          "01/02/24 00:00:00",
                                          "32",
                                          "org",
                                          "user",
                                          "plv",
                                          "quill",
                                          "name",
                                          "3",
                                          "4",
                                          "1",
                                          "2",
                                          "5",
                                          "6",
                                          "7",
                                          "8",
                                          "9",
                                          "4294967295"};

TEST_F(Statistics, OverviewSetupSaysUnknownFourTimes) {
    EXPECT_EQ(composed(UiNoticeType::Setup, composeStatsOverviewSetup),
              overviewNotice("setup", "false", "Wren Gate", "Unknown", "Unknown", "Unknown", "Unknown"));
}

TEST_F(Statistics, DetailsSetupHasEveryRowWithoutValue) {
    EXPECT_EQ(composed(UiNoticeType::Setup, composeStatsDetailsSetup),
              notice("setup", "stat_outlinelistbox", "false", fixedGroups(std::vector<std::string>(26, ""))));
}

TEST_F(Statistics, OverviewNamesTheFourStatuses) {
    EXPECT_EQ(overview(fullStatus()),
              overviewNotice("update", "true", "Wren Gate (Active)", "Revoked", "Unreachable",
                             "BadClientCert", "DisconnectedUpgradePending"));
}

TEST_F(Statistics, DetailsHoldEveryValueInItsRow) {
    EXPECT_EQ(details(fullStatus()),
              notice("update", "stat_outlinelistbox", "false", fixedGroups(fullValues)));
}

TEST_F(Statistics, OnlyTheFirstOfSeveralEnrollmentsCounts) {
    StatusNotification_t status = fullStatus();
    status.enrollments.emplace_back();
    EXPECT_EQ(details(status), details(fullStatus()));
    EXPECT_EQ(overview(status), overview(fullStatus()));
}

TEST_F(Statistics, WithoutEnrollmentCountsAreZeroTimesNoneAndStatusesUnknownOrEmpty) {
    StatusNotification_t status;
    status.state = "active";
    status.interceptor_connectivity = InterceptorConnectivity::Ok;
    EXPECT_EQ(overview(status),
              overviewNotice("update", "true", "Wren Gate (Active)", "Unknown", "Unknown", "Unknown", "Ok"));
    EXPECT_EQ(details(status), notice("update", "stat_outlinelistbox", "false",
                                      fixedGroups({"None", "Unknown", "",  "0", "None", "0", "",  "None", "",
                                                   "None", "0",       "",  "",  "",     "",  "",  "0",    "0",
                                                   "0",    "0",       "0", "0", "0",    "0", "0", "0"})));
}

TEST_F(Statistics, AnEnrollmentOfDefaultsSaysUnknown) {
    StatusNotification_t status;
    status.enrollments.emplace_back();
    const std::string text = details(status);
    EXPECT_NE(text.find(row("stat_server_connectivity", "Server Connectivity:", "Unknown")),
              std::string::npos);
    EXPECT_NE(text.find(row("stat_certificate_state", "State:", "Unknown")), std::string::npos);
    EXPECT_NE(text.find(row("stat_certificate_renewal_status", "Renewal Status:", "Unknown")),
              std::string::npos);
}

TEST_F(Statistics, TheStateStandsInTheTitleWithACapital) {
    StatusNotification_t status;
    status.state = "inactive_tnd";
    EXPECT_NE(overview(status).find("\"Wren Gate (Inactive_tnd)\""), std::string::npos);
    status.state = "";
    EXPECT_NE(overview(status).find("<listrowcolumn label=\"Wren Gate\"/>"), std::string::npos);
}

TEST_F(Statistics, ProxiesAndFingerprintsFollowInListOrder) {
    StatusNotification_t status = fullStatus();
    status.enrollments[0].dataplane_status.proxy_configs = {
        {"a", "active"}, {"b", "inactive_tnd"}, {"b", "nonsense"}, {"foobar", ""}};
    status.enrollments[0].network_status.fingerprints = {{"", FingerprintStatus::Matched},
                                                         {"a", FingerprintStatus::Unmatched},
                                                         {"b", FingerprintStatus::Unknown},
                                                         {"c", static_cast<FingerprintStatus>(9)}};
    // The published FNV-1a values of "", "a", "b", "c" and "foobar".
    EXPECT_EQ(details(status),
              notice("update", "stat_outlinelistbox", "false",
                     fixedGroups(fullValues) +
                         group("stat_group_proxy_configs_info", "Proxy Configurations:",
                               row("stat_proxy_config_item_3826002220", "a", "Active") +
                                   row("stat_proxy_config_item_3876335077", "b", "Paused by TND") +
                                   row("stat_proxy_config_item_3876335077", "b", "Unknown") +
                                   row("stat_proxy_config_item_3214735720", "foobar", "Unknown")) +
                         group("stat_group_network_status_fingerprints_info", "Network Fingerprints:",
                               row("stat_network_status_fingerprint_item_2166136261", "", "Matched") +
                                   row("stat_network_status_fingerprint_item_3826002220", "a", "Unmatched") +
                                   row("stat_network_status_fingerprint_item_3876335077", "b", "Unknown") +
                                   row("stat_network_status_fingerprint_item_3859557458", "c", "Unknown"))));
}

TEST(ProxyStatusText, EveryWordHasItsText) {
    EXPECT_EQ(proxyStatusText("active"), "Active");
    EXPECT_EQ(proxyStatusText("inactive_tnd"), "Paused by TND");
    EXPECT_EQ(proxyStatusText("inactive_captive_portal"), "Paused by Captive Portal");
    EXPECT_EQ(proxyStatusText("inactive_user_pause"), "Paused by user");
    EXPECT_EQ(proxyStatusText("inactive_reenrollment"), "Paused during re-enrollment");
    EXPECT_EQ(proxyStatusText("Active"), "Unknown");
    EXPECT_EQ(proxyStatusText(""), "Unknown");
}

TEST_F(Statistics, TimesAreNoneNotAvailableOrLocal) {
    EXPECT_EQ(formatStatTime(0), "None");
    EXPECT_EQ(formatStatTime(9'999'999), "None");
    EXPECT_EQ(formatStatTime(-9'999'999), "None");
    EXPECT_EQ(formatStatTime(-10'000'000), "N/A");
    EXPECT_EQ(formatStatTime(10'000'000), "01/01/70 00:00:01");
    EXPECT_EQ(formatStatTime(secondsOf2024 * 10'000'000), "01/01/24 00:00:00");
    const test::ScopedEnvironment eastern("TZ", "EST5");
    EXPECT_EQ(formatStatTime(secondsOf2024 * 10'000'000), "12/31/23 19:00:00");
}

TEST_F(Statistics, EveryTimeOfARecordIsShown) {
    const std::pair<std::int64_t, std::string> times[] = {
        {2147483648, "01/19/38 03:14:08"},
        {32535215999, "12/31/00 23:59:59"}, // the last second of the year 3000
        {32535216000, "01/01/01 00:00:00"},
        {32535244800, "01/01/01 08:00:00"},
        {253402300799, "12/31/99 23:59:59"}, // the last second of the year 9999
        {253402300800, "01/01/00 00:00:00"},
    };
    for (const auto& [seconds, text] : times) {
        EXPECT_EQ(formatStatTime(seconds * 10'000'000), text) << seconds;
    }
    EXPECT_EQ(formatStatTime(std::numeric_limits<QuillTimePoint>::max()), "09/14/97 02:48:05");
}

} // namespace
