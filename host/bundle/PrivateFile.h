/// Files that nobody but their owner may read.
#pragma once

#include <filesystem>
#include <string_view>

namespace host::bundle {

/// Writes a file whole or not at all: what stands under that name is either the former file or the new one.
/// Only the owner may read and write it.
/// @param replaces whether a file that is there already may go; a link is replaced, not what it leads to
/// @throws HostError where there is a file that may not go, or where it cannot be written
void writePrivateFile(const std::filesystem::path& file, std::string_view content, bool replaces);

} // namespace host::bundle
