/// Shows where the threads of this process are.
#pragma once

namespace host {

/// Writes the stacks of all threads, the calling one included, to a file descriptor. A thread that does not
/// answer within a second is named without its stack. For one thread at a time.
void printThreadStacks(int descriptor);

} // namespace host
