#include "host/StandardStreams.h"

#include <windows.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace host {

void makeStandardStreamsBinary() {
    ::_setmode(::_fileno(stdin), _O_BINARY);
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
}

bool standardInputIsTerminal() {
    DWORD mode = 0; // a console has one; to the C library every device is a terminal, NUL too
    return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

} // namespace host
