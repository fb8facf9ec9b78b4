/// Where this program stands.
#pragma once

#include <filesystem>

namespace host {

/// The running program's file, with links resolved.
/// @throws HostError where the system does not tell
std::filesystem::path programPath();

} // namespace host
