#include "host/TimeZone.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace host {

void setTimeZone(const std::string& zone) {
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
}

std::string timeZone() {
    if (const char* chosen = std::getenv("TZ"); chosen != nullptr && *chosen != '\0') {
        return chosen;
    }
    // The system's own is a link into a folder of all zones.
    const std::string folder = "/zoneinfo/";
    std::error_code error;
    const std::string target = std::filesystem::read_symlink("/etc/localtime", error).string();
    const std::size_t at = target.find(folder);
    return at == std::string::npos ? std::string() : target.substr(at + folder.size());
}

} // namespace host
