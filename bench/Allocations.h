/// How often memory was asked for.
#pragma once

namespace bench {

/// Allocations of this thread so far, by whatever function and in whatever library.
unsigned long allocations() noexcept;

} // namespace bench
