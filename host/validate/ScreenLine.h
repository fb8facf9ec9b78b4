/// Notices in short, for checks that compare what a step shows.
#pragma once

#include "host/Notice.h"

#include <string>
#include <string_view>

namespace host::validate {

/// What a notice is about, in one line:
///
///     tile update Attention "status" "tray text" [Details Verify-]     buttons that show; "-": disabled
///     adv-enrollment update enabled                                    "managed" behind it where that shows
///     adv-sync update disabled "last sync"
///     stats-overview update, stats-details update
///     toast "title" "text" button-id
///     popup dialog-id operation, dispose dialog-id
///     apilog element, history text, hide-window
std::string screenLine(const NoticeElement& notice);

/// The first element below that has the id, or null.
const NoticeElement* findById(const NoticeElement& element, std::string_view id);

} // namespace host::validate
