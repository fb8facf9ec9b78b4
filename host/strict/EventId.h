/// What an event document names.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// The id of an event document; empty where the text is no such document.
std::string eventIdOf(std::string_view xml);

} // namespace host
