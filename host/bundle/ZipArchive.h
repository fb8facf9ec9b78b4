/// Archives that every system opens.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace host::bundle {

struct ArchiveFile {
    std::string name; ///< UTF-8, folders parted by "/"
    std::string content;
};

/// A ZIP archive of the files as they are, not compressed, all of one time in UTC (at a resolution of two
/// seconds, from 1980 to 2107).
/// @throws HostError where the archive would exceed what the format holds (65,535 files, 4 GiB)
std::string zipArchive(const std::vector<ArchiveFile>& files, std::chrono::system_clock::time_point time);

} // namespace host::bundle
