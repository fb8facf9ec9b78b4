/// The operating system's name and version.
#pragma once

#include <string>

/// Kinds of operating systems.
struct MYOSVER_OS {
    enum Type : int {
        Unknown = 0,
        Win,
        WinArm64,
        WinUwp,
        MacIntel,
        MacArm,
        LinuxX86_64 = 6,
        LinuxArm64 = 7,
        Solaris,
        AppleIos,
        GoogleAndroid,
        ChromeOs,
        VpnAndroid,
        KnoxAndroid = 13,
    };

    /// The kind's name. A number that is no `Type` is logged and yields "unknown".
    static const char* ToString(int type);
};

/// What there is to know of an operating system.
struct OsVersion_t {
    MYOSVER_OS::Type type = MYOSVER_OS::Unknown;
    int major = 0;
    int minor = 0;
    int build = 0;
    std::string further;            ///< what stands behind the three numbers; may be empty
    const char* family = "Unknown"; ///< name of the family of systems
};

/// The system that this process runs on, read once by the constructor.
class OsVerApi {
public:
    OsVerApi();
    explicit OsVerApi(OsVersion_t told);

    MYOSVER_OS::Type GetType() const noexcept { return version.type; }
    /// "10.0.19045", with the further word behind it where there is one: "6.1.0 18-amd64".
    std::string GetVersionText() const;
    /// "Linux" or "Windows"; "Unknown" where the system doesn't tell.
    const char* GetFamilyName() const noexcept { return version.family; }

    /// Whether the system itself, not just this process, has 64 bits.
    static bool Is64BitSystem();

private:
    OsVersion_t version;
};
