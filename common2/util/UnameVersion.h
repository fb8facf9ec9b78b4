/// What a POSIX system says of itself.
#pragma once

#include "common2/util/OsVerApi.h"

#include <string_view>

namespace common2 {

/// The version of a Linux system by the words of `uname`.
/// @param release "6.1.0-18-amd64": up to three numbers, and what follows them, less the sign between
/// @param machine "x86_64"; a machine that has no type of its own leaves it unknown
OsVersion_t linuxVersion(std::string_view release, std::string_view machine);

} // namespace common2
