#include "presentation-plugin/xml/PreparedScreens.h"

#include "common/PluginIdentity.h"
#include "common/api/StatusNotification.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "presentation-plugin/xml/StatisticsComposition.h"
#include "presentation-plugin/xml/StatisticsRows.h"
#include "xml/XmlUINotice.h"

#include <charconv>

namespace {

/// Composes a notice with marks and prepares it; its "timestamp" is always the first mark.
template <class Compose>
PreparedNotice prepare(UiNoticeType type, const char* tag, Compose compose) {
    XmlUINotice notice(type, tag, pluginIdentity::identity);
    notice.setTimestamp(PreparedNotice::value);
    compose(notice);
    return PreparedNotice(notice);
}

template <class Compose>
PreparedNotice prepareUpdate(Compose compose) {
    return prepare(UiNoticeType::Update, nullptr, compose);
}

/// A mark in place of a text. An empty text stays: it shapes the notice, since a label without text is hidden
/// or absent.
const char* markFor(const char* text) { return *text ? PreparedNotice::value : text; }

} // namespace

PreparedScreens::PreparedScreens()
    : apiLogNotice(prepare(
          UiNoticeType::ApiLog, "apilog",
          [](XmlUINotice& notice) { notice.addNode(PreparedNotice::name).setValue(PreparedNotice::text); }))
    , overviewNotice(prepareUpdate(composePreparedStatsOverview))
    , detailsNotice(prepareUpdate(composePreparedStatsDetails)) {}

std::string_view PreparedScreens::present() { return times.now(noticeTimeFormat); }

void PreparedScreens::apiLog(common2::TextBuffer& out, std::string_view element, std::string_view text) {
    NoticeFiller filler(apiLogNotice, out);
    filler.putValue(present());
    filler.putName(element);
    filler.putText(text);
    filler.putName(element);
    filler.finish();
}

void PreparedScreens::tile(common2::TextBuffer& out, const TileContent& content, bool tellHistory) {
    TileShape shape{content, tellHistory};
    shape.content.status = markFor(content.status);
    shape.content.trayText = markFor(content.trayText);
    if (tileNotice.shape != shape) {
        tileNotice.notice = prepareUpdate([&shape](XmlUINotice& notice) {
            CEventStore bindsNothing;
            composeTile(notice, shape.content, shape.tellHistory, bindsNothing);
        });
        tileNotice.shape = shape;
    }
    NoticeFiller filler(tileNotice.notice, out);
    filler.putValue(present());
    if (*content.status) {
        filler.putValue(content.status);
        if (tellHistory) {
            filler.putValue(content.status);
        }
    }
    if (*content.trayText) {
        filler.putValue(content.trayText);
    }
    filler.finish();
}

void PreparedScreens::advEnrollment(common2::TextBuffer& out, const AdvEnrollmentGroup& group) {
    if (enrollmentNotice.shape != group) {
        enrollmentNotice.notice = prepareUpdate([&group](XmlUINotice& notice) {
            CEventStore bindsNothing;
            composeAdvEnrollmentGroup(notice, group, bindsNothing);
        });
        enrollmentNotice.shape = group;
    }
    NoticeFiller filler(enrollmentNotice.notice, out);
    filler.putValue(present());
    filler.finish();
}

void PreparedScreens::advConfigSync(common2::TextBuffer& out, const AdvConfigSyncGroup& group) {
    AdvConfigSyncGroup shape = group;
    shape.lastSync = markFor(group.lastSync);
    if (configSyncNotice.shape != shape) {
        configSyncNotice.notice = prepareUpdate([&shape](XmlUINotice& notice) {
            CEventStore bindsNothing;
            composeAdvConfigSyncGroup(notice, shape, bindsNothing);
        });
        configSyncNotice.shape = shape;
    }
    NoticeFiller filler(configSyncNotice.notice, out);
    filler.putValue(present());
    if (*group.lastSync) {
        filler.putValue(group.lastSync); // the label's text
        filler.putValue(group.lastSync); // its tooltip
    }
    filler.finish();
}

void PreparedScreens::statsOverview(common2::TextBuffer& out, const StatusNotification_t& status) {
    const StatOverviewValues values = statOverviewValues(status);
    NoticeFiller filler(overviewNotice, out);
    filler.putValue(present());
    filler.putValue(statOverviewTitle(status.state));
    filler.putValue(values.certificate);
    filler.putValue(values.configSync);
    filler.putValue(values.proxy);
    filler.putValue(values.interceptor);
    filler.finish();
}

void PreparedScreens::statsDetails(common2::TextBuffer& out, const StatusNotification_t& status) {
    const StatSource source = statSource(status, times);
    NoticeFiller filler(detailsNotice, out);
    filler.putValue(present());
    for (const StatGroup& group : statDetailGroups) {
        for (const StatRow& row : group.rows) {
            scratch.clear();
            row.value(source, scratch);
            filler.putValue(scratch);
        }
    }
    putItems(filler, statProxies, source.enrollment.dataplane_status.proxy_configs, proxyStatusText);
    putItems(filler, statFingerprints, source.enrollment.network_status.fingerprints, fingerprintStatusText);
    filler.finish();
}

/// Marks: a cut before the group, one before the row, the row's three values, one behind the row, one behind
/// the group.
template <class Entry, class TextOfStatus>
void PreparedScreens::putItems(NoticeFiller& filler, const StatItemGroup& items,
                               const std::vector<Entry>& entries, TextOfStatus textOfStatus) {
    constexpr std::size_t marksOfRow = 4;
    filler.pass();
    if (entries.empty()) {
        filler.skip(1 + marksOfRow + 1);
        return;
    }
    filler.pass();
    for (const Entry& entry : entries) {
        char digits[16];
        const auto end = std::to_chars(digits, digits + sizeof digits, statItemHash(entry.label)).ptr;
        scratch.assign(items.rowIdPrefix).append(digits, end);
        filler.putPlain(scratch);
        filler.putValue(entry.label);
        filler.putPlain(textOfStatus(entry.status));
        filler.pass();
        filler.back(marksOfRow);
    }
    filler.skip(marksOfRow);
    filler.pass();
}
