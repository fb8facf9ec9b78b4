#include "host/ProgramPath.h"

#include "host/HostError.h"

#include <system_error>

namespace host {

std::filesystem::path programPath() {
    std::error_code error;
    std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        throw HostError("cannot tell where this program stands: " + error.message());
    }
    return path;
}

} // namespace host
