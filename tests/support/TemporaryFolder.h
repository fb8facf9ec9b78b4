/// A folder for the length of a test.
#pragma once

#include <filesystem>
#include <string_view>

namespace test {

/// An empty folder of its own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const noexcept { return folder; }
    /// Writes a file below the folder, whose folders are made as needed.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const;

private:
    std::filesystem::path folder;
};

} // namespace test
