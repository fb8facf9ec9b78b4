#include "tests/allocation/FailingCrypto.h"

#include "tests/allocation/FailingAllocation.h"

#include <openssl/crypto.h>

#include <cstdlib>

namespace test {
namespace {

void* allocateForCrypto(std::size_t size, const char*, int) {
    return mustAllocationFail() ? nullptr : std::malloc(size);
}

void* reallocateForCrypto(void* memory, std::size_t size, const char*, int) {
    return mustAllocationFail() ? nullptr : std::realloc(memory, size);
}

void freeForCrypto(void* memory, const char*, int) { std::free(memory); }

/// libcrypto takes other functions only before it has allocated anything.
const bool isCryptoSet = CRYPTO_set_mem_functions(allocateForCrypto, reallocateForCrypto, freeForCrypto) == 1;

} // namespace

bool cryptoCanFail() noexcept { return isCryptoSet; }

} // namespace test
