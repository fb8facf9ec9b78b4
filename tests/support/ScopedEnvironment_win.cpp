#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>
#include <ctime>

namespace test {
namespace {

void put(const std::string& name, const char* value) {
    ::_putenv_s(name.c_str(), value ? value : "");
    ::_tzset();
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
