/// How a fuzz target tells that something does not hold.
#pragma once

#include <string>

namespace fuzz {

/// Ends the program where it does not hold, so that the fuzzer keeps the input.
void require(bool holds, const std::string& what);

} // namespace fuzz
