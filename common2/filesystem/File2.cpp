#include "common2/filesystem/File2.h"

#include "common2/logging/Common2Loggers.h"

#include <fstream>
#include <ios>

namespace {

constexpr std::size_t chunkSize = 16 * 1024;

/// Reads to the end. The stream says how it went: nothing but its end is left of a good one.
void readAll(std::ifstream& stream, std::string& text) {
    char chunk[chunkSize];
    while (stream.read(chunk, sizeof chunk) || stream.gcount() > 0) {
        text.append(chunk, static_cast<std::size_t>(stream.gcount()));
        if (text.size() > File2::largestFile) {
            stream.setstate(std::ios_base::badbit);
            return;
        }
    }
    if (stream.eof() && !stream.bad()) {
        stream.clear();
    }
}

/// The words of the gravest bit.
std::string failureOf(std::ios_base::iostate state) {
    if (state & std::ios_base::badbit) {
        return "ios_base::badbit set";
    }
    if (state & std::ios_base::failbit) {
        return "ios_base::failbit set";
    }
    return state & std::ios_base::eofbit ? "ios_base::eofbit set" : "";
}

std::string read(const std::filesystem::path& path, std::string& text) {
    // Whatever else can be opened may never come to an end.
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) {
        return failureOf(std::ios_base::failbit);
    }
    std::ifstream stream(path, std::ios_base::binary);
    if (stream) {
        readAll(stream, text);
    }
    return failureOf(stream.rdstate());
}

} // namespace

std::string File2::ReadSync(const std::filesystem::path& path, std::string& text) {
    std::string content;
    std::string failure = read(path, content);
    if (failure.empty()) {
        text = std::move(content);
    } else {
        COMMON2_LOG(DBG_ERROR, "File2::ReadSync") << "failed to read file " << path.string();
    }
    return failure;
}
