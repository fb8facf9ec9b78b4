#include "common/QuillInstallPaths.h"

#include "common2/logging/Common2Loggers.h"
#include "common2/windows/os/KnownFolder.h"

#include <array>

namespace {

/// Folder of the data, by context.
constexpr std::array<int, 2> folderIds{KnownFolder::ProgramData, KnownFolder::LocalAppData};

constexpr const char* suiteFolder = "Norvane/Norvane Kestrel Suite";
constexpr const char* productFolder = "WREN";

} // namespace

std::filesystem::path QuillInstallPaths::GetProgramDataPath(int context) {
    const auto index = static_cast<std::size_t>(context);
    if (index >= folderIds.size()) {
        COMMON2_LOG(DBG_WARN, "QuillInstallPaths::GetProgramDataPath") << "Invalid context: " << context;
        return {};
    }
    std::filesystem::path path = KnownFolder::GetPath(folderIds[index]);
    if (!path.empty()) {
        path /= suiteFolder;
        path /= productFolder;
        path.make_preferred();
    }
    return path;
}
