#include "host/StandardStreams.h"

namespace host {

void makeStandardStreamsBinary() {
    // They are.
}

} // namespace host
