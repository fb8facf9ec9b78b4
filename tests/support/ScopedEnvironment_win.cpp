#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>
#include <ctime>

namespace test {

void ScopedEnvironment::put(const std::string& name, const char* value) {
    ::_putenv_s(name.c_str(), value ? value : "");
}

void ScopedEnvironment::readZone() { ::_tzset(); }

} // namespace test
