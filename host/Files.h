/// Reading files.
#pragma once

#include <filesystem>
#include <string>

namespace host {

/// The whole file.
/// @throws HostError where it cannot be read
std::string readFile(const std::filesystem::path& path);

} // namespace host
