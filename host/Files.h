/// Reading files.
#pragma once

#include <filesystem>
#include <string>

namespace host {

/// The whole file.
/// @throws HostError where it cannot be read
std::string readFile(const std::filesystem::path& path);

/// The whole of a file where nothing but a regular file belongs; a pipe or a device would keep the program
/// waiting.
/// @throws HostError where there is none, where it cannot be read, and for more than 16 MiB
std::string readRegularFile(const std::filesystem::path& path);

} // namespace host
