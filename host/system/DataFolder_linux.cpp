#include "host/system/DataFolder.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace host {
namespace {

/// Where a module looks before it asks the system.
constexpr const char* variable = "WREN_PROGRAM_DATA";

} // namespace

struct DataFolder::Before {
    explicit Before(const char* present) {
        if (present != nullptr) {
            value = present;
        }
    }
    std::optional<std::string> value;
};

DataFolder::DataFolder(const std::filesystem::path& folder)
    : before(std::make_unique<Before>(std::getenv(variable))) {
    ::setenv(variable, folder.c_str(), 1);
}

DataFolder::~DataFolder() {
    if (before->value) {
        ::setenv(variable, before->value->c_str(), 1);
    } else {
        ::unsetenv(variable);
    }
}

std::filesystem::path programDataFolder() {
    const char* const chosen = ::secure_getenv(variable);
    return chosen != nullptr && *chosen != '\0' ? chosen : "/var/lib";
}

} // namespace host
