#include "common2/filesystem/File2.h"

#include "common2/filesystem/RegularFile.h"
#include "common2/logging/Common2Loggers.h"

namespace {

std::string read(const std::filesystem::path& path, std::string& text) {
    std::error_code error;
    common2::RegularFile file(path, error);
    if (error) {
        return "ios_base::failbit set";
    }
    text = file.read(File2::largestFile, error);
    return error ? "ios_base::badbit set" : "";
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
