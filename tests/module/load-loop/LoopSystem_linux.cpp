#include "tests/module/load-loop/LoopSystem.h"

#include <fstream>
#include <string>

namespace test {

const std::size_t allowedFiles = 0;

bool moduleIsLoaded() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("kes_wren") != std::string::npos) {
            return true;
        }
    }
    return false;
}

} // namespace test
