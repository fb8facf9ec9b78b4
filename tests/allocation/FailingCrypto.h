/// libcrypto with the program's own allocation, as far as it is a library of the program's. Only programs
/// that link FailingCrypto.cpp have it.
#pragma once

namespace test {

/// Whether libcrypto's allocations fail, too, where a test says so.
bool cryptoCanFail() noexcept;

} // namespace test
