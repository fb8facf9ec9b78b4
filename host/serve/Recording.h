/// The journal as a session file.
#pragma once

#include "host/serve/Journal.h"

#include <string>

namespace host::serve {

enum class Secrets { Kept, BlankedOut };

/// A session file of what the journal holds: inputs that session files know with the outputs that they
/// caused, numbered anew, each input's outputs right behind it. Inputs of other kinds become comments;
/// outputs that belong to no input that is kept are left out.
std::string sessionText(const JournalSlice& slice, Secrets secrets);

} // namespace host::serve
