#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>
#include <ctime>

namespace test {

void ScopedEnvironment::put(const std::string& name, const char* value) {
    if (value) {
        ::setenv(name.c_str(), value, 1);
    } else {
        ::unsetenv(name.c_str());
    }
}

void ScopedEnvironment::readZone() { ::tzset(); }

} // namespace test
