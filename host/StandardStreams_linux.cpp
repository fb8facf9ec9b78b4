#include "host/StandardStreams.h"

#include <unistd.h>

namespace host {

void makeStandardStreamsBinary() {
    // They are.
}

bool standardInputIsTerminal() { return ::isatty(STDIN_FILENO) == 1; }

} // namespace host
