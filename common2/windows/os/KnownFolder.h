/// The platform's own folders.
#pragma once

#include <filesystem>

class KnownFolder {
public:
    enum Id : int {
        ProgramFiles = 0,
        ProgramFilesX86 = 1,
        System = 2,
        SystemX86 = 3,
        ProgramData = 4,  ///< data of all users
        LocalAppData = 5, ///< data of the user
        UserProfile = 6,
    };

    /// The folder of that id, which need not exist. Any thread may ask.
    /// @param id an `Id`
    /// @return empty, with one line in the log, for any other number and where the platform knows no folder
    static std::filesystem::path GetPath(int id);
};
