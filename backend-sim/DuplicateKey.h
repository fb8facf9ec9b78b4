/// Finds what a document tree hides: a key that an object holds twice.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// The JSON pointer to the first key of `text` that its object has held before; none if every key is its
/// object's only one, or if the text is no JSON.
std::optional<std::string> findDuplicateKey(std::string_view text);

} // namespace sim
