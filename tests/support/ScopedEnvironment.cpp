#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>

namespace test {

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value)
    : variable(name) {
    if (const char* present = std::getenv(name)) {
        former = present;
    }
    put(variable, value);
}

ScopedEnvironment::~ScopedEnvironment() { put(variable, former ? former->c_str() : nullptr); }

} // namespace test
