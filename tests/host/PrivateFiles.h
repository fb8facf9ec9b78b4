/// Who may read a file.
#pragma once

#include <filesystem>

namespace test {

/// Whether the file's owner may read and write it, and no other user may do anything.
bool isForItsOwnerOnly(const std::filesystem::path& file);

} // namespace test
