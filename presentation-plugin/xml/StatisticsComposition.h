/// The statistics: a short overview with four statuses, and a details tree with all counters.
#pragma once

#include "common/api/QuillTimePoint.h"
#include "xml/XmlUINotice.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace common2 {
class LocalTimeCache;
}
struct StatusNotification_t;

/// A time as the statistics show it: "None" for less than a second since 1970, "N/A" for a time before, else
/// local time in the locale's date and time.
std::string formatStatTime(QuillTimePoint time);
/// The same from a cache, valid until its next use.
std::string_view formatStatTime(QuillTimePoint time, common2::LocalTimeCache& times);

/// What the panels say for the "status" word of a proxy configuration.
std::string_view proxyStatusText(std::string_view status) noexcept;

/// The FNV-1a hash that keeps a named row the same row between updates.
constexpr std::uint32_t statItemHash(std::string_view name) noexcept {
    std::uint32_t hash = 0x811c9dc5u;
    for (const char character : name) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619u;
    }
    return hash;
}

/// Fill a "setup" notice: the rows stand, nothing is known yet.
void composeStatsOverviewSetup(XmlUINotice& notice);
void composeStatsDetailsSetup(XmlUINotice& notice);

/// Fill an "update" notice from a status. Of several enrollments the first counts; without any, the overview
/// says "Unknown" and the details hold zeros.
void composeStatsOverview(XmlUINotice& notice, const StatusNotification_t& status);
void composeStatsDetails(XmlUINotice& notice, const StatusNotification_t& status);

/// The same with marks (see PreparedNotice) in place of all that an update may change. In the details, each
/// of the two lists of entries stands between cuts, with one row between cuts of its own.
void composePreparedStatsOverview(XmlUINotice& notice);
void composePreparedStatsDetails(XmlUINotice& notice);
