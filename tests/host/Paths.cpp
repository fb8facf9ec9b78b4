#include "tests/host/Paths.h"

#include "host/ProgramPath.h"

namespace test {

std::string placed(const char* path) {
    return (host::programPath().parent_path() / path).lexically_normal().string();
}

} // namespace test
