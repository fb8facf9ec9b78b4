/// Time as the backend's records hold it.
#pragma once

#include <cstdint>

/// Ticks of 100 nanoseconds since 1970-01-01 00:00:00 UTC. Zero stands for "never".
using QuillTimePoint = std::int64_t;

inline constexpr std::int64_t quillTicksPerSecond = 10'000'000;
