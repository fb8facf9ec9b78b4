#include "common2/windows/os/KnownFolder.h"

#include "common2/logging/Common2Loggers.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

/// A folder, or the code of what stood in the way.
struct Lookup {
    std::filesystem::path path;
    int error = 0;
};

/// Names the data folder in place of the system's own.
constexpr const char* programDataVariable = "WREN_PROGRAM_DATA";

constexpr std::size_t usualPasswdSize = 1024;
constexpr std::size_t largestPasswdSize = 1024 * 1024;

/// The variable's value; empty if it is not set, and in a program that runs with rights that its caller
/// lacks.
std::filesystem::path variable(const char* name) {
    const char* value = ::secure_getenv(name);
    return value ? value : "";
}

Lookup homeOfPasswd() {
    std::vector<char> storage(usualPasswdSize);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &entry, storage.data(), storage.size(), &found);
        if (error == ERANGE && storage.size() < largestPasswdSize) {
            storage.resize(storage.size() * 2);
            continue;
        }
        if (error != 0) {
            return {{}, error};
        }
        if (!found || !found->pw_dir || !*found->pw_dir) {
            return {{}, ENOENT};
        }
        return {found->pw_dir};
    }
}

Lookup home() {
    std::filesystem::path told = variable("HOME");
    return told.empty() ? homeOfPasswd() : Lookup{std::move(told)};
}

Lookup programData() {
    std::filesystem::path told = variable(programDataVariable);
    return {told.empty() ? "/var/lib" : std::move(told)};
}

Lookup localAppData() {
    std::filesystem::path told = variable("XDG_DATA_HOME");
    if (told.is_absolute()) { // by the convention of that variable, a relative path is to be ignored
        return {std::move(told)};
    }
    Lookup folder = home();
    if (!folder.error) {
        folder.path /= ".local/share";
    }
    return folder;
}

Lookup lookUp(int id) {
    switch (id) {
    case KnownFolder::ProgramFiles:
    case KnownFolder::ProgramFilesX86:
        return {"/opt"};
    case KnownFolder::System:
    case KnownFolder::SystemX86:
        return {"/usr/lib"};
    case KnownFolder::ProgramData:
        return programData();
    case KnownFolder::LocalAppData:
        return localAppData();
    case KnownFolder::UserProfile:
        return home();
    default:
        return {{}, EINVAL};
    }
}

} // namespace

std::filesystem::path KnownFolder::GetPath(int id) {
    Lookup folder = lookUp(id);
    if (folder.error) {
        COMMON2_LOG(DBG_ERROR, "KnownFolder::GetPath") << "SHGetKnownFolderPath failed: " << folder.error;
    }
    return std::move(folder.path);
}
