#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>
#include <ctime>

namespace test {
namespace {

void put(const std::string& name, const char* value) {
    if (value) {
        ::setenv(name.c_str(), value, 1);
    } else {
        ::unsetenv(name.c_str());
    }
    ::tzset();
}

} // namespace

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value)
    : variable(name) {
    if (const char* present = std::getenv(name)) {
        former = present;
    }
    put(variable, value);
}

ScopedEnvironment::~ScopedEnvironment() { put(variable, former ? former->c_str() : nullptr); }

} // namespace test
