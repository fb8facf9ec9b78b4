#include "host/Files.h"

#include "host/HostError.h"

#include <fstream>

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

} // namespace host
