#include "fuzz/Require.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {

void require(bool holds, const std::string& what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what.c_str());
        std::abort();
    }
}

} // namespace fuzz
