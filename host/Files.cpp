#include "host/Files.h"

#include "host/HostError.h"

#include <cstdio>
#include <memory>

namespace host {

std::string readFile(const std::filesystem::path& path) {
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    std::string content;
    char part[16 * 1024];
    for (std::size_t count = 0; file && (count = std::fread(part, 1, sizeof part, file.get())) > 0;) {
        content.append(part, count);
    }
    if (!file || std::ferror(file.get()) != 0) {
        throw HostError("cannot read " + path.string());
    }
    return content;
}

} // namespace host
