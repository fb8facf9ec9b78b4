/// What ends a command early.
#pragma once

#include <stdexcept>

namespace host {

/// A fault in what the host was given: a file, a module, an argument. The message is one line for the person
/// who gave it; the program ends with exit code 2.
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace host
