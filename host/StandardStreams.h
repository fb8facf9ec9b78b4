/// Standard input and output.
#pragma once

namespace host {

/// Lets bytes pass as they are: by default, some systems write another end of line than the program does. To
/// be called before anything is read or written.
void makeStandardStreamsBinary();

/// Whether a person may be at the other end of standard input.
bool standardInputIsTerminal();

} // namespace host
