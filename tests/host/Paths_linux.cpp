#include "tests/host/Paths.h"

namespace test {

const char* const temporaryFolderVariable = "TMPDIR";
const char* const stackPattern = R"(thread [0-9]+ \([^]*wren_host_tests)";
const char* const crashText = "signal 6 (SIGABRT)";
const char* const crashWhenLoadedText = "crashed, signal 6 (SIGABRT)\n";

} // namespace test
