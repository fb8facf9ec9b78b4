/// Regular files, read without waiting for anybody. Stands alone: the reference host uses it, too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace common2 {

/// An open regular file. What was opened is asked what it is, not its path: whoever may write to the folder
/// could put something else there in between. A pipe or a device is let go of at once, since it may never
/// come to an end.
class RegularFile {
public:
    /// @param error takes what stands in the way, or is cleared; `errc::invalid_argument` for what is no
    /// regular file
    RegularFile(const std::filesystem::path& path, std::error_code& error);
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    /// Reads from where the last reading ended to the file's end.
    /// @param limit in bytes
    /// @param error takes what stands in the way, or is cleared; `errc::file_too_large` for more than
    /// `limit`, `errc::resource_unavailable_try_again` for what would have to be waited for
    /// @return the bytes; empty on failure
    std::string read(std::size_t limit, std::error_code& error);

private:
    /// Reads some bytes.
    /// @return their number; 0 at the end and on failure
    std::size_t readSome(char* bytes, std::size_t size, std::error_code& error);

    std::intptr_t handle; ///< the system's; -1 for none
};

} // namespace common2
