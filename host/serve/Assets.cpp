#include "host/serve/Assets.h"

#include "host/ProgramPath.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace host::serve {
namespace {

namespace fs = std::filesystem;

struct FileType {
    std::string_view ending;
    std::string_view type;
};

constexpr FileType fileTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".json", "application/json"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
};

std::string_view typeOf(const fs::path& file) {
    const auto found = std::find_if(std::begin(fileTypes), std::end(fileTypes),
                                    [&](const FileType& type) { return file.extension() == type.ending; });
    return found == std::end(fileTypes) ? std::string_view() : found->type;
}

bool isHidden(const fs::path& file) { return file.filename().native().starts_with('.'); }

} // namespace

Assets::Assets(const fs::path& folder) {
    for (const char* part : {"app", "pages"}) {
        std::error_code error;
        fs::recursive_directory_iterator entry(folder / part, error);
        for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            const fs::path& file = entry->path();
            if (isHidden(file)) {
                entry.disable_recursion_pending();
            } else if (const std::string_view type = typeOf(file);
                       !type.empty() && fs::is_regular_file(entry->symlink_status(error))) {
                assets.emplace(file.lexically_relative(folder).generic_string(), Asset{file, type});
            }
        }
    }
}

const Asset* Assets::find(std::string_view name) const {
    const auto found = assets.find(name);
    return found == assets.end() ? nullptr : &found->second;
}

fs::path defaultAssetFolder() { return programPath().parent_path().parent_path() / "share" / "wren-host"; }

} // namespace host::serve
