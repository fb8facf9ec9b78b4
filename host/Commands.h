/// The commands of the program. Each takes what its options say, writes to standard output, and throws
/// HostError where it cannot do its job.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace host {

struct ScriptOptions {
    std::filesystem::path file;
    std::filesystem::path module;
    std::string logLevel; ///< one of `logLevels`
};
/// Runs a session file and prints it with its outputs.
void runScript(const ScriptOptions& options);

struct InfoOptions {
    std::filesystem::path module;
    bool asJson = false;
};
/// Tells what a module is and offers.
void showInfo(const InfoOptions& options);

struct WatchOptions {
    std::filesystem::path module;
    std::string logLevel;           ///< one of `logLevels`, or empty to leave the log out
    std::filesystem::path scenario; ///< of the stand-in service; empty for its usual one
};
/// Runs the module and prints what its user would see, until the program is interrupted.
void watchScreen(const WatchOptions& options);

struct ServeOptions {
    std::filesystem::path module;
    std::string logLevel;           ///< one of `logLevels`: of the log lines that viewers get
    std::filesystem::path scenario; ///< of the stand-in service; empty for its usual one
    unsigned short port = 0;        ///< 0: any that is free
    bool keepsSecrets = false;      ///< in recordings
    std::uint32_t slowness = 0;     ///< milliseconds that the host takes for each notice
};
/// Runs the module and shows its screen to browsers on this machine, until the program is interrupted.
void serveScreen(const ServeOptions& options);

} // namespace host
