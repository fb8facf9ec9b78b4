/// The words of notices, as this host knows them.
#pragma once

#include "host/Notice.h"
#include "host/strict/Violation.h"

#include <string_view>
#include <vector>

namespace host {

/// Holds a notice against the protocol's words: elements in their places, their attributes, the values.
std::vector<Violation> vocabularyFaults(const NoticeElement& notice);

/// Whether an attribute of that name binds an event: "OnPress" and its like.
bool isEventAttribute(std::string_view name);

} // namespace host
