// The two lists of statistics.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <boost/json/parse.hpp>

#include <array>

namespace host::validate {
namespace {

namespace json = boost::json;

/// "title: value" of each row under its group's title in brackets.
Lines rowsIn(const NoticeElement& notice, std::string_view listId) {
    Lines lines;
    const NoticeElement* list = findById(notice, listId);
    expect(list != nullptr, joined({"no list ", listId}));
    for (const NoticeElement& group : list->children) {
        const NoticeElement* title = group.child("listrowcolumn");
        lines.push_back(joined({"[", title != nullptr ? title->attribute("label") : "", "]"}));
        for (const NoticeElement& row : group.children) {
            if (row.name == "listrow" && row.children.size() == 2) {
                lines.push_back(
                    joined({row.children[0].attribute("label"), " ", row.children[1].attribute("label")}));
            }
        }
    }
    return lines;
}

constexpr std::string_view overviewId = "overview_stat_outlinelistbox";
constexpr std::string_view detailsId = "stat_outlinelistbox";

Lines overviewOf(const Step& step, std::string_view type = "update") {
    return rowsIn(step.notice(joined({"stats-overview ", type})), overviewId);
}
Lines detailsOf(const Step& step, std::string_view type = "update") {
    return rowsIn(step.notice(joined({"stats-details ", type})), detailsId);
}

/// The value behind a row's title.
std::string valueIn(const Lines& rows, std::string_view title) {
    for (const std::string& row : rows) {
        if (row.starts_with(title)) {
            return row.substr(title.size() + 1);
        }
    }
    throw CheckFailure(joined({"no row \"", title, "\""}));
}

void setsTheOverviewUp(Trial& trial) {
    expectEqual("the overview's rows", overviewOf(trial.begin(), "setup"),
                {"[Wren Gate]", "Certificate Status: Unknown", "Config Sync Status: Unknown",
                 "Proxy Status: Unknown", "Interceptor Status: Unknown"});
}

void setsTheDetailsUp(Trial& trial) {
    const Lines rows = detailsOf(trial.begin(), "setup");
    const Lines groups = {"[General:]", "[Config Sync]", "[Norvane Gatehouse Certificate]",
                          "[Active Flow Counts:]", "[Cumulative Flow Counts:]"};
    Lines seen;
    for (const std::string& row : rows) {
        if (row.starts_with("[")) {
            seen.push_back(row);
        }
    }
    expectEqual("the groups", seen, groups);
    expectEqual("rows and groups", static_cast<std::int64_t>(rows.size()), 31);
}

void tellsTheOverview(Trial& trial) {
    trial.begin();
    expectEqual("the overview's rows", overviewOf(trial.status(enrolledDocument())),
                {"[Wren Gate (Active)]", "Certificate Status: Ok", "Config Sync Status: Ok",
                 "Proxy Status: Ok", "Interceptor Status: Ok"});
}

void tellsTheState(Trial& trial) {
    trial.begin();
    expectEqual("the title", lineAt(overviewOf(trial.status(errorDocument("x"))), 0), "[Wren Gate (Error)]");
    expectEqual("the title of an empty state",
                lineAt(overviewOf(trial.status(with(notEnrolledDocument(), "/state", ""))), 0),
                "[Wren Gate]");
}

void tellsTheDetails(Trial& trial) {
    trial.begin();
    expectEqual("the details' rows", detailsOf(trial.status(enrolledDocument())),
                {"[General:]",
                 "Enrollment Time: 07/22/23 04:26:40",
                 "Proxy Connectivity Status: Ok",
                 "[Config Sync]",
                 "Server Connectivity: Ok",
                 "Sync Interval (minutes): 30",
                 "Last Successful Sync: 11/14/23 21:56:40",
                 "Failed Attempts Since Last Sync: 1",
                 "[Norvane Gatehouse Certificate]",
                 "State: Ok",
                 "Expiration Time: 10/27/24 03:33:20",
                 "Renewal Status: Waiting",
                 "Last Renewal Attempt: 10/22/23 18:40:00",
                 "Failed Attempts to Renew Certificate: 2",
                 "Organization ID: org-1",
                 "User ID: user-1",
                 "Plover Desktop ID: plv-1",
                 "Device ID: device-1",
                 "Username: Robin",
                 "[Active Flow Counts:]",
                 "Active UDP Flows: 3",
                 "Active TCP Flows: 4",
                 "[Cumulative Flow Counts:]",
                 "UDP Flows: 101",
                 "TCP Flows: 102",
                 "Allowed UDP Flows: 95",
                 "Allowed TCP Flows: 96",
                 "Blocked UDP Flows: 7",
                 "Blocked TCP Flows: 8",
                 "Authenticated UDP Flows: 9",
                 "Authenticated TCP Flows: 10",
                 "[Proxy Configurations:]",
                 "Main proxy Active",
                 "[Network Fingerprints:]",
                 "Office Matched"});
}

void tellsDefaults(Trial& trial) {
    trial.begin();
    const Step step = trial.status(notEnrolledDocument());
    expectEqual("the overview's rows", overviewOf(step),
                {"[Wren Gate (Active)]", "Certificate Status: Unknown", "Config Sync Status: Unknown",
                 "Proxy Status: Unknown", "Interceptor Status: Ok"});
    const Lines rows = detailsOf(step);
    expectEqual("the enrollment's time", valueIn(rows, "Enrollment Time:"), "None");
    expectEqual("a counter", valueIn(rows, "UDP Flows:"), "0");
    expectEqual("a name", valueIn(rows, "Username:"), "");
    expectEqual("rows and groups", static_cast<std::int64_t>(rows.size()), 31);
}

void countsTheFirstEnrollment(Trial& trial) {
    trial.begin();
    json::value document = enrolledDocument();
    json::array& enrollments = document.as_object()["enrollments"].as_array();
    enrollments.push_back(enrollments[0]);
    enrollments[1].at("dataplane_status").as_object()["flow_cnt_udp"] = 999;
    expectEqual("the first enrollment's counter", valueIn(detailsOf(trial.status(document)), "UDP Flows:"),
                "101");
}

void tellsGreatCounters(Trial& trial) {
    trial.begin();
    expectEqual("the greatest counter",
                valueIn(detailsOf(trial.status(with(
                            enrolledDocument(), "/enrollments/0/dataplane_status/flow_cnt_tcp", 4294967295))),
                        "TCP Flows:"),
                "4294967295");
}

void tellsTimesBeforeTheEpoch(Trial& trial) {
    trial.begin();
    expectEqual(
        "a time before 1970",
        valueIn(detailsOf(trial.status(with(enrolledDocument(), "/enrollments/0/enrollment_time", -1))),
                "Enrollment Time:"),
        "N/A");
}

void namesConnectivities(Trial& trial) {
    trial.begin();
    constexpr std::array<std::pair<const char*, const char*>, 13> words{{
        {"unknown", "Unknown"},
        {"load_failed", "LoadFailed"},
        {"config_failed", "ConfigFailed"},
        {"invalid_config", "InvalidConfig"},
        {"approval_required", "ApprovalRequired"},
        {"reboot_required", "RebootRequired"},
        {"disconnected", "Disconnected"},
        {"upgrade_pending", "DisconnectedUpgradePending"},
        {"planned_disruption", "DisconnectedOtherPlannedDisruption"},
        {"code_sign_check_failed", "CodeSignCheckFailed"},
        {"internal_error", "InternalError"},
        {"LoadFailed", "Unknown"},
        {"", "Unknown"},
    }};
    for (const auto& [word, name] : words) {
        trial.status(enrolledDocument()); // two words with one name are no change
        const Step step = trial.status(with(enrolledDocument(), "/interceptor_connectivity", word));
        expectEqual(joined({"the interceptor's \"", word, "\""}),
                    valueIn(overviewOf(step), "Interceptor Status:"), name);
    }
}

void namesCertificates(Trial& trial) {
    trial.begin();
    constexpr std::array<std::pair<const char*, const char*>, 7> words{{
        {"unknown", "Unknown"},
        {"expired", "Expired"},
        {"revoked", "Revoked"},
        {"rejected", "Rejected"},
        {"internal_error", "InternalError"},
        {"Expired", "Unknown"},
        {"x", "Unknown"},
    }};
    for (const auto& [word, name] : words) {
        trial.status(enrolledDocument()); // two words with one name are no change
        const Step step = trial.status(
            with(enrolledDocument(), "/enrollments/0/certificate_status/certificate_state", word));
        expectEqual(joined({"the certificate's \"", word, "\""}),
                    valueIn(overviewOf(step), "Certificate Status:"), name);
    }
}

void tellsProxies(Trial& trial) {
    trial.begin();
    const Lines rows = detailsOf(trial.status(
        with(enrolledDocument(), "/enrollments/0/dataplane_status/proxy_configs",
             json::parse(R"([{"label":"a","status":"active"},{"label":"b","status":"inactive_tnd"},
                             {"label":"c","status":"inactive_captive_portal"},
                             {"label":"d","status":"inactive_user_pause"},
                             {"label":"e","status":"inactive_reenrollment"},
                             {"label":"f","status":"Active"},{"label":"a","status":"active"}])"))));
    const Lines proxies = linesFrom(rows, 31, 8);
    expectEqual("the proxies' rows", proxies,
                {"[Proxy Configurations:]", "a Active", "b Paused by TND", "c Paused by Captive Portal",
                 "d Paused by user", "e Paused during re-enrollment", "f Unknown", "a Active"});
}

void keepsAProxysRow(Trial& trial) {
    trial.begin();
    const NoticeElement details = trial.status(enrolledDocument()).notice("stats-details update");
    // The FNV-1a hashes, of 32 bits, of "Main proxy" and "Office".
    expect(findById(details, "stat_proxy_config_item_1088991176") != nullptr,
           "the proxy's row has another id");
    expect(findById(details, "stat_network_status_fingerprint_item_484525393") != nullptr,
           "the fingerprint's row has another id");
}

void leavesEmptyGroupsOut(Trial& trial) {
    trial.begin();
    json::value document =
        with(enrolledDocument(), "/enrollments/0/dataplane_status/proxy_configs", json::array());
    document = with(document, "/enrollments/0/network_status/fingerprints", json::array());
    expectEqual("rows and groups", static_cast<std::int64_t>(detailsOf(trial.status(document)).size()), 31);
}

void saysWhetherRowsAreUpdated(Trial& trial) {
    trial.begin();
    const Step step = trial.status(enrolledDocument());
    const auto flagOf = [&](std::string_view line, std::string_view id) {
        const NoticeElement notice = step.notice(line);
        const NoticeElement* list = findById(notice, id);
        expect(list != nullptr, joined({"no list ", id}));
        return joined({list->attribute("updaterows"), " ", list->attribute("num_columns")});
    };
    expectEqual("the overview's attributes", flagOf("stats-overview update", overviewId), "true 2");
    expectEqual("the details' attributes", flagOf("stats-details update", detailsId), "false 2");
}

constexpr Check statisticsTable[] = {
    {"statistics.overview-setup", "The overview is set up with four unknown statuses.", Through::Both,
     &setsTheOverviewUp},
    {"statistics.details-setup", "The details are set up with all their groups and rows.", Through::Both,
     &setsTheDetailsUp},
    {"statistics.overview", "The overview tells state and statuses.", Through::Both, &tellsTheOverview},
    {"statistics.state", "The overview's title tells the state, unless it is empty.", Through::Both,
     &tellsTheState},
    {"statistics.details", "The details tell every value of the enrollment.", Through::Both,
     &tellsTheDetails},
    {"statistics.defaults", "Without an enrollment there are zeros, \"None\" and \"Unknown\".", Through::Both,
     &tellsDefaults},
    {"statistics.first-enrollment", "Of several enrollments the first one counts.", Through::Both,
     &countsTheFirstEnrollment},
    {"statistics.great-counter", "A counter has all of its 32 bits.", Through::Both, &tellsGreatCounters},
    {"statistics.negative-time", "A time before 1970 is not told.", Through::Both, &tellsTimesBeforeTheEpoch},
    {"statistics.interceptor-words", "Every status of the interceptor has its name.", Through::Both,
     &namesConnectivities},
    {"statistics.certificate-words", "Every state of the certificate has its name.", Through::Both,
     &namesCertificates},
    {"statistics.proxies", "Each proxy has a row with its status in words.", Through::Both, &tellsProxies},
    {"statistics.row-ids", "The rows of proxies and fingerprints have the hash of their name as id.",
     Through::Both, &keepsAProxysRow},
    {"statistics.empty-groups", "Groups without proxies or fingerprints are left out.", Through::Both,
     &leavesEmptyGroupsOut},
    {"statistics.update-rows", "The overview updates its rows, the details lay theirs out anew.",
     Through::Both, &saysWhetherRowsAreUpdated},
};

} // namespace

std::span<const Check> statisticsChecks() { return statisticsTable; }

} // namespace host::validate
