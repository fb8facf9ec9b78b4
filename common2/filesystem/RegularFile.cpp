#include "common2/filesystem/RegularFile.h"

namespace common2 {

std::string RegularFile::read(std::size_t limit, std::error_code& error) {
    constexpr std::size_t chunkSize = 16 * 1024;
    error.clear();
    std::string content;
    char chunk[chunkSize];
    while (const std::size_t count = readSome(chunk, sizeof chunk, error)) {
        content.append(chunk, count);
        if (content.size() > limit) {
            error = std::make_error_code(std::errc::file_too_large);
            break;
        }
    }
    return error ? std::string() : content;
}

} // namespace common2
