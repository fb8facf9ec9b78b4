#include "tests/host/Paths.h"

namespace test {

const char* const temporaryFolderVariable = "TMP";
const char* const stackPattern = R"(thread [0-9]+ at 0x[0-9a-f]+\n)"; // without symbols
const char* const crashText = "code 0xC0000005";
const char* const crashWhenLoadedText = ": error 998\n"; // the system takes it for a failure to load

} // namespace test
