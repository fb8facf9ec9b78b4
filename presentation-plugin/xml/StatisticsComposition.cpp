#include "presentation-plugin/xml/StatisticsComposition.h"

#include "common/api/StatusNotification.h"
#include "common2/util/LocalTimeCache.h"
#include "presentation-plugin/xml/StatisticsRows.h"
#include "xml/PreparedNotice.h"
#include "xml/UiVocabulary.h"
#include "xml/UiWireNames.h"

#include <array>
#include <string>
#include <vector>

namespace {

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

void composeOverview(XmlUINotice& notice, bool updateRows, const char* title,
                     const StatOverviewValues& values) {
    XmlNode list = addList(notice, statOverviewId, updateRows);
    XmlNode group = addGroup(list, "stat_overview_group_quill", title);
    addRow(group, "stat_overview_cert_status", "Certificate Status:", literal(values.certificate));
    addRow(group, "stat_overview_config_sync_status", "Config Sync Status:", literal(values.configSync));
    addRow(group, "stat_overview_proxy_status", "Proxy Status:", literal(values.proxy));
    addRow(group, "stat_overview_interceptor_status", "Interceptor Status:", literal(values.interceptor));
}

// The details.

template <class Entry, class TextOfStatus>
void addItems(XmlNode& list, const StatItemGroup& items, const std::vector<Entry>& entries,
              TextOfStatus textOfStatus) {
    if (entries.empty()) {
        return;
    }
    XmlNode group = addGroup(list, items.id, items.title);
    std::string rowId;
    for (const Entry& entry : entries) {
        rowId = items.rowIdPrefix;
        rowId += std::to_string(statItemHash(entry.label));
        addRow(group, rowId.c_str(), entry.label.c_str(), literal(textOfStatus(entry.status)));
    }
}

/// The list of the details with its fixed groups; `textOf` gives the text of a row.
template <class TextOf>
XmlNode composeDetails(XmlUINotice& notice, TextOf textOf) {
    XmlNode list = addList(notice, statDetailsId, false);
    for (const StatGroup& group : statDetailGroups) {
        XmlNode element = addGroup(list, group.id, group.title);
        for (const StatRow& row : group.rows) {
            addRow(element, row.id, row.title, textOf(row));
        }
    }
    return list;
}

/// A group of entries, cut before itself, around the one row that stands for all, and behind itself.
void addPreparedItems(XmlNode& list, const StatItemGroup& items) {
    list.addChild(PreparedNotice::cut);
    XmlNode group = addGroup(list, items.id, items.title);
    group.addChild(PreparedNotice::cut);
    addRow(group, PreparedNotice::value, PreparedNotice::value, PreparedNotice::value);
    group.addChild(PreparedNotice::cut);
    list.addChild(PreparedNotice::cut);
}

} // namespace

std::string formatStatTime(QuillTimePoint time) {
    common2::LocalTimeCache times;
    return std::string(formatStatTime(time, times));
}

std::string_view formatStatTime(QuillTimePoint time, common2::LocalTimeCache& times) {
    const std::int64_t seconds = time / quillTicksPerSecond;
    if (seconds == 0) {
        return "None";
    }
    return seconds < 0 ? "N/A" : times.at(seconds, L"%x %X");
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
    return statUnknown;
}

void composeStatsOverviewSetup(XmlUINotice& notice) {
    composeOverview(notice, false, statOverviewTitle("").c_str(), {});
}

void composeStatsDetailsSetup(XmlUINotice& notice) {
    composeDetails(notice, [](const StatRow&) { return ""; });
}

void composeStatsOverview(XmlUINotice& notice, const StatusNotification_t& status) {
    composeOverview(notice, true, statOverviewTitle(status.state).c_str(), statOverviewValues(status));
}

void composeStatsDetails(XmlUINotice& notice, const StatusNotification_t& status) {
    common2::LocalTimeCache times;
    const StatSource source = statSource(status, times);
    std::string text;
    XmlNode list = composeDetails(notice, [&](const StatRow& row) {
        text.clear();
        row.value(source, text);
        return text.c_str();
    });
    addItems(list, statProxies, source.enrollment.dataplane_status.proxy_configs, proxyStatusText);
    addItems(list, statFingerprints, source.enrollment.network_status.fingerprints, fingerprintStatusText);
}

void composePreparedStatsOverview(XmlUINotice& notice) {
    constexpr const char* value = PreparedNotice::value;
    composeOverview(notice, true, value, {value, value, value, value});
}

void composePreparedStatsDetails(XmlUINotice& notice) {
    XmlNode list = composeDetails(notice, [](const StatRow&) { return PreparedNotice::value; });
    addPreparedItems(list, statProxies);
    addPreparedItems(list, statFingerprints);
}
