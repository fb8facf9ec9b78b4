#include "tests/host/PrivateFiles.h"

namespace test {

bool isForItsOwnerOnly(const std::filesystem::path& file) {
    using std::filesystem::perms;
    return std::filesystem::status(file).permissions() == (perms::owner_read | perms::owner_write);
}

} // namespace test
