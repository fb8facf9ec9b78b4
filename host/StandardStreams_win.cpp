#include "host/StandardStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace host {

void makeStandardStreamsBinary() {
    ::_setmode(::_fileno(stdin), _O_BINARY);
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
}

bool standardInputIsTerminal() { return ::_isatty(::_fileno(stdin)) != 0; }

} // namespace host
