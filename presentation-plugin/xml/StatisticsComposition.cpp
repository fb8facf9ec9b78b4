#include "presentation-plugin/xml/StatisticsComposition.h"

#include "common/PluginIdentity.h"
#include "common/api/StatusNotification.h"
#include "common2/util/LocalTimeText.h"
#include "xml/UiVocabulary.h"
#include "xml/UiWireNames.h"

#include <array>
#include <cctype>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr std::string_view unknown = "Unknown";

/// What the rows of the details are read from.
struct StatSource {
    const Enrollment_t& enrollment; ///< the first, or one of defaults
    bool exists;                    ///< whether there is an enrollment
};

/// One row of the details; `value` appends its text to an empty string.
struct StatRow {
    const char* id;
    const char* title;
    void (*value)(const StatSource& source, std::string& text);
};

struct StatGroup {
    const char* id;
    const char* title;
    std::span<const StatRow> rows;
};

// How a field becomes text.

void appendTime(std::string& text, QuillTimePoint time) { text += formatStatTime(time); }

void appendNumber(std::string& text, std::uint32_t number) { text += std::to_string(number); }

/// Enumerations are empty rather than "Unknown" where there is no enrollment to speak of.
template <class Enumeration>
void appendName(std::string& text, const StatSource& source, Enumeration value) {
    if (source.exists) {
        text += nameOf(value);
    }
}

std::string_view proxyConnectivity(const StatSource& source) {
    return source.exists ? nameOf(source.enrollment.dataplane_status.server_connectivity) : unknown;
}

template <auto Field>
void flowCount(const StatSource& source, std::string& text) {
    appendNumber(text, source.enrollment.dataplane_status.*Field);
}

template <auto Field>
void urn(const StatSource& source, std::string& text) {
    text += source.enrollment.certificate_status.certificate_urns.*Field;
}

// The rows, group by group.

constexpr std::array generalRows{
    StatRow{"stat_enrollment_time", "Enrollment Time:",
            [](const StatSource& s, std::string& text) { appendTime(text, s.enrollment.enrollment_time); }},
    StatRow{"stat_proxy_connectivity", "Proxy Connectivity Status:",
            [](const StatSource& s, std::string& text) { text += proxyConnectivity(s); }},
};

constexpr std::array configSyncRows{
    StatRow{"stat_server_connectivity", "Server Connectivity:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.config_sync_status.server_connectivity);
            }},
    StatRow{"stat_sync_interval_min", "Sync Interval (minutes):",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.config_sync_status.config_sync_interval_min);
            }},
    StatRow{"stat_last_sync_success_time", "Last Successful Sync:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s.enrollment.config_sync_status.last_config_sync_success);
            }},
    StatRow{"stat_fail_cnt_since_last_sync_success", "Failed Attempts Since Last Sync:",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.config_sync_status.fail_cnt_since_last_sync_success);
            }},
};

constexpr std::array certificateRows{
    StatRow{"stat_certificate_state", "State:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.certificate_status.certificate_state);
            }},
    StatRow{"stat_expiration_time", "Expiration Time:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s.enrollment.certificate_status.certificate_expiration_time);
            }},
    StatRow{"stat_certificate_renewal_status", "Renewal Status:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.certificate_status.certificate_renewal_status);
            }},
    StatRow{"stat_last_renewal_attempt_time", "Last Renewal Attempt:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s.enrollment.certificate_status.last_renewal_attempt_time);
            }},
    StatRow{"stat_failed_renewal_attempt_cnt", "Failed Attempts to Renew Certificate:",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.certificate_status.failed_renewal_attempt_cnt);
            }},
    StatRow{"stat_org_id", "Organization ID:", urn<&CertificateUrns_t::org_id>},
    StatRow{"stat_user_id", "User ID:", urn<&CertificateUrns_t::user_id>},
    StatRow{"stat_plv_id", "Plover Desktop ID:", urn<&CertificateUrns_t::plv_id>},
    StatRow{"stat_quill_device_id", "Device ID:", urn<&CertificateUrns_t::quill_device_id>},
    StatRow{"stat_user_name", "Username:", urn<&CertificateUrns_t::user_name>},
};

constexpr std::array activeFlowRows{
    StatRow{"stat_active_flow_cnt_udp",
            "Active UDP Flows:", flowCount<&DataplaneStatus_t::active_flow_cnt_udp>},
    StatRow{"stat_active_flow_cnt_tcp",
            "Active TCP Flows:", flowCount<&DataplaneStatus_t::active_flow_cnt_tcp>},
};

constexpr std::array cumulativeFlowRows{
    StatRow{"stat_flow_cnt_udp", "UDP Flows:", flowCount<&DataplaneStatus_t::flow_cnt_udp>},
    StatRow{"stat_flow_cnt_tcp", "TCP Flows:", flowCount<&DataplaneStatus_t::flow_cnt_tcp>},
    StatRow{"stat_allowed_flow_cnt_udp",
            "Allowed UDP Flows:", flowCount<&DataplaneStatus_t::allowed_flow_cnt_udp>},
    StatRow{"stat_allowed_flow_cnt_tcp",
            "Allowed TCP Flows:", flowCount<&DataplaneStatus_t::allowed_flow_cnt_tcp>},
    StatRow{"stat_blocked_flow_cnt_udp",
            "Blocked UDP Flows:", flowCount<&DataplaneStatus_t::blocked_flow_cnt_udp>},
    StatRow{"stat_blocked_flow_cnt_tcp",
            "Blocked TCP Flows:", flowCount<&DataplaneStatus_t::blocked_flow_cnt_tcp>},
    StatRow{"stat_authenticated_flow_cnt_udp",
            "Authenticated UDP Flows:", flowCount<&DataplaneStatus_t::authenticated_flow_cnt_udp>},
    StatRow{"stat_authenticated_flow_cnt_tcp",
            "Authenticated TCP Flows:", flowCount<&DataplaneStatus_t::authenticated_flow_cnt_tcp>},
};

constexpr std::array<StatGroup, 5> detailGroups{{
    {"stat_group_general_info", "General:", generalRows},
    {"stat_group_config_sync_info", "Config Sync", configSyncRows},
    {"stat_group_certificate_info", "Norvane Gatehouse Certificate", certificateRows},
    {"stat_group_active_flow_info", "Active Flow Counts:", activeFlowRows},
    {"stat_group_cumulative_info", "Cumulative Flow Counts:", cumulativeFlowRows},
}};

// Writing.

/// A constant text as a C string: a view of a literal ends at its NUL, an empty one may point nowhere.
const char* literal(std::string_view text) { return text.empty() ? "" : text.data(); }

XmlNode addList(XmlUINotice& notice, const char* id, bool updateRows) {
    XmlUICtrl list = notice.addCtrl(UiCtrlType::OutlineListBox, id);
    list.setAttribute(wire::updaterows, wireBool(updateRows)).setAttribute(wire::num_columns, "2");
    return list;
}

void addColumn(XmlNode& parent, const char* text) {
    parent.addChild(wire::listrowcolumn).setAttribute(wire::label, text);
}

XmlNode addGroup(XmlNode& list, const char* id, const char* title) {
    XmlNode group = list.addChild(wire::listgroup);
    group.setAttribute(wire::id, id);
    addColumn(group, title);
    return group;
}

void addRow(XmlNode& group, const char* id, const char* title, const char* value) {
    XmlNode row = group.addChild(wire::listrow);
    row.setAttribute(wire::id, id);
    addColumn(row, title);
    addColumn(row, value);
}

// The overview.

struct OverviewValues {
    std::string_view certificate = unknown;
    std::string_view configSync = unknown;
    std::string_view proxy = unknown;
    std::string_view interceptor = unknown;
};

/// The title with the state in parentheses behind it, its first letter in capitals; without a state the
/// plain title.
std::string overviewTitle(std::string_view state) {
    std::string title = pluginIdentity::label;
    if (!state.empty()) {
        title.append(" (").append(1,
                                  static_cast<char>(std::toupper(static_cast<unsigned char>(state.front()))));
        title.append(state.substr(1)).append(")");
    }
    return title;
}

void composeOverview(XmlUINotice& notice, bool updateRows, std::string_view state,
                     const OverviewValues& values) {
    XmlNode list = addList(notice, "overview_stat_outlinelistbox", updateRows);
    XmlNode group = addGroup(list, "stat_overview_group_quill", overviewTitle(state).c_str());
    addRow(group, "stat_overview_cert_status", "Certificate Status:", literal(values.certificate));
    addRow(group, "stat_overview_config_sync_status", "Config Sync Status:", literal(values.configSync));
    addRow(group, "stat_overview_proxy_status", "Proxy Status:", literal(values.proxy));
    addRow(group, "stat_overview_interceptor_status", "Interceptor Status:", literal(values.interceptor));
}

// The details.

/// One row for each entry of a list; a row's id ends in the hash of the entry's name.
template <class Entry, class TextOfStatus>
void addItems(XmlNode& list, const char* groupId, const char* title, std::string_view rowIdPrefix,
              const std::vector<Entry>& entries, TextOfStatus textOfStatus) {
    if (entries.empty()) {
        return;
    }
    XmlNode group = addGroup(list, groupId, title);
    std::string rowId;
    for (const Entry& entry : entries) {
        rowId = rowIdPrefix;
        rowId += std::to_string(statItemHash(entry.label));
        addRow(group, rowId.c_str(), entry.label.c_str(), literal(textOfStatus(entry.status)));
    }
}

std::string_view fingerprintStatusText(FingerprintStatus status) {
    const std::string_view name = nameOf(status);
    return name.empty() ? unknown : name;
}

} // namespace

std::string formatStatTime(QuillTimePoint time) {
    const std::int64_t seconds = time / quillTicksPerSecond;
    if (seconds == 0) {
        return "None";
    }
    return seconds < 0 ? "N/A" : common2::localTimeText(seconds, L"%x %X");
}

std::string_view proxyStatusText(std::string_view status) noexcept {
    struct Text {
        std::string_view status;
        std::string_view text;
    };
    constexpr std::array<Text, 5> texts{{
        {"active", "Active"},
        {"inactive_tnd", "Paused by TND"},
        {"inactive_captive_portal", "Paused by Captive Portal"},
        {"inactive_user_pause", "Paused by user"},
        {"inactive_reenrollment", "Paused during re-enrollment"},
    }};
    for (const Text& known : texts) {
        if (known.status == status) {
            return known.text;
        }
    }
    return unknown;
}

void composeStatsOverviewSetup(XmlUINotice& notice) { composeOverview(notice, false, "", {}); }

void composeStatsDetailsSetup(XmlUINotice& notice) {
    XmlNode list = addList(notice, "stat_outlinelistbox", false);
    for (const StatGroup& group : detailGroups) {
        XmlNode element = addGroup(list, group.id, group.title);
        for (const StatRow& row : group.rows) {
            addRow(element, row.id, row.title, "");
        }
    }
}

void composeStatsOverview(XmlUINotice& notice, const StatusNotification_t& status) {
    OverviewValues values;
    values.interceptor = nameOf(status.interceptor_connectivity);
    if (!status.enrollments.empty()) {
        const Enrollment_t& first = status.enrollments.front();
        values.certificate = nameOf(first.certificate_status.certificate_state);
        values.configSync = nameOf(first.config_sync_status.server_connectivity);
        values.proxy = nameOf(first.dataplane_status.server_connectivity);
    }
    composeOverview(notice, true, status.state, values);
}

void composeStatsDetails(XmlUINotice& notice, const StatusNotification_t& status) {
    static const Enrollment_t defaults;
    const bool exists = !status.enrollments.empty();
    const StatSource source{exists ? status.enrollments.front() : defaults, exists};

    XmlNode list = addList(notice, "stat_outlinelistbox", false);
    std::string text;
    for (const StatGroup& group : detailGroups) {
        XmlNode element = addGroup(list, group.id, group.title);
        for (const StatRow& row : group.rows) {
            text.clear();
            row.value(source, text);
            addRow(element, row.id, row.title, text.c_str());
        }
    }
    addItems(list, "stat_group_proxy_configs_info", "Proxy Configurations:", "stat_proxy_config_item_",
             source.enrollment.dataplane_status.proxy_configs, proxyStatusText);
    addItems(list, "stat_group_network_status_fingerprints_info",
             "Network Fingerprints:", "stat_network_status_fingerprint_item_",
             source.enrollment.network_status.fingerprints, fingerprintStatusText);
}
