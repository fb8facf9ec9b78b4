#include "host/system/PrivateFolder.h"

#include "host/HostError.h"

#include <random>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder(const std::string& purpose) {
    std::random_device random;
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
    bool isMade = false;
    for (int attempt = 0; !error && !isMade && attempt < 100; ++attempt) {
        folder = parent / (purpose + "-" + std::to_string(random()));
        isMade = fs::create_directory(folder, error); // false: somebody else has it
    }
    if (isMade) {
        fs::permissions(folder, fs::perms::owner_all, error);
    }
    if (!isMade || error) {
        throw HostError("cannot make a temporary folder");
    }
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

} // namespace host
