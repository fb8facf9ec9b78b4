#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>

namespace test {

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value, Zone zone)
    : variable(name) {
    if (const char* present = std::getenv(name)) {
        former = present;
    }
    put(variable, value);
    if (zone == Zone::IsReadNow) {
        readZone();
    }
}

ScopedEnvironment::~ScopedEnvironment() {
    put(variable, former ? former->c_str() : nullptr);
    readZone();
}

} // namespace test
