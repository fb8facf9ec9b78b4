#include "host/Files.h"

#include "common2/filesystem/RegularFile.h"
#include "host/HostError.h"

#include <cstddef>
#include <fstream>
#include <system_error>

namespace host {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content;
    char part[16 * 1024];
    while (file.read(part, sizeof part) || file.gcount() > 0) {
        content.append(part, static_cast<std::size_t>(file.gcount()));
    }
    if (!file.eof() || file.bad()) {
        throw HostError("cannot read " + path.string());
    }
    return content;
}

std::string readRegularFile(const std::filesystem::path& path) {
    constexpr std::size_t largestFile = 16 * 1024 * 1024;
    std::error_code error;
    common2::RegularFile file(path, error);
    std::string content = error ? std::string() : file.read(largestFile, error);
    if (error) {
        throw HostError("cannot read " + path.string());
    }
    return content;
}

} // namespace host
