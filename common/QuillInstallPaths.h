/// Where this product keeps its files.
#pragma once

#include <filesystem>

class QuillInstallPaths {
public:
    /// The product's data folder, which need not exist.
    /// @param context 0 for the machine, 1 for the user
    /// @return empty, with one line in the log, for any other context and where the platform knows no folder
    static std::filesystem::path GetProgramDataPath(int context);
};
