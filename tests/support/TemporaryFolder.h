/// A folder for the length of a test.
#pragma once

#include "host/system/PrivateFolder.h"

#include <filesystem>
#include <string_view>

namespace test {

/// An empty folder of its own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder()
        : folder("wren-test") {}

    const std::filesystem::path& path() const noexcept { return folder.path(); }
    /// Writes a file below the folder, whose folders are made as needed.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const;

private:
    host::PrivateFolder folder;
};

} // namespace test
