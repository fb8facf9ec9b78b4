/// Keys that a JSON object holds twice, which a document tree does not show.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The first key that comes twice in the object that `text` is; keys of objects inside do not count.
std::optional<std::string> duplicateKey(std::string_view text);

} // namespace host
