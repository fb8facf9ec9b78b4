/// The notices that documents cause again and again, written from prepared texts.
#pragma once

#include "common2/data/TextBuffer.h"
#include "common2/util/LocalTimeCache.h"
#include "presentation-plugin/xml/AdvancedPanelsComposition.h"
#include "presentation-plugin/xml/TileComposition.h"
#include "xml/PreparedNotice.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct StatusNotification_t;
struct StatItemGroup;

/// Appends the text of an "update" notice, or of a log notice, to a buffer. The text is the one that
/// composing, stamping with the present time and printing the notice yields; only the way there is shorter:
/// what never changes is kept ready, what changes is spliced in. Belongs to one thread at a time.
class PreparedScreens {
public:
    PreparedScreens();

    /// The raw text of a document, for the host's log.
    /// @param text not empty
    void apiLog(common2::TextBuffer& out, std::string_view element, std::string_view text);

    void tile(common2::TextBuffer& out, const TileContent& content, bool tellHistory);

    /// @param group with constants for its texts
    void advEnrollment(common2::TextBuffer& out, const AdvEnrollmentGroup& group);
    /// @param group with constants for its texts, save `lastSync`
    void advConfigSync(common2::TextBuffer& out, const AdvConfigSyncGroup& group);

    void statsOverview(common2::TextBuffer& out, const StatusNotification_t& status);
    void statsDetails(common2::TextBuffer& out, const StatusNotification_t& status);

    /// The times that all of them write.
    common2::LocalTimeCache& localTimes() noexcept { return times; }

private:
    /// A notice that is prepared for one state of its switches and prepared anew for another.
    template <class Shape>
    struct Shaped {
        std::optional<Shape> shape;
        PreparedNotice notice;
    };

    struct TileShape {
        TileContent content;
        bool tellHistory;

        bool operator==(const TileShape&) const = default;
    };

    std::string_view present();

    template <class Entry, class TextOfStatus>
    void putItems(NoticeFiller& filler, const StatItemGroup& items, const std::vector<Entry>& entries,
                  TextOfStatus textOfStatus);

    common2::LocalTimeCache times;
    PreparedNotice apiLogNotice;
    PreparedNotice overviewNotice;
    PreparedNotice detailsNotice;
    Shaped<TileShape> tileNotice;
    Shaped<AdvEnrollmentGroup> enrollmentNotice;
    Shaped<AdvConfigSyncGroup> configSyncNotice;
    std::string scratch; ///< one value
};
