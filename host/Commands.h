/// The commands of the program. Each takes what its options say, writes to standard output, and throws
/// HostError where it cannot do its job.
#pragma once

#include "host/PluginObject.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace host {

struct ScriptOptions {
    std::filesystem::path file;
    std::filesystem::path module;
    std::string logLevel;                         ///< one of `logLevels`
    std::optional<PluginInterface> onlyInterface; ///< for all objects; none leaves it to the file's lines
    bool isStrict = false;                        ///< whether broken rules are looked for
};
/// Runs a session file and prints it with its outputs. Broken rules go to standard error.
/// @return whether no rule was broken
bool runScript(const ScriptOptions& options);

/// Runs a session file's inputs and compares what comes of them with the outputs in the file. Prints the
/// first difference, or that there is none.
/// @return whether all was as expected
bool replaySession(const ScriptOptions& options);

struct InfoOptions {
    std::filesystem::path module;
    bool asJson = false;
    PluginInterface way = PluginInterface::Cpp;
};
/// Tells what a module is and offers.
void showInfo(const InfoOptions& options);

enum class MachineNotation { Dot, Mermaid, Table };
struct MachineOptions {
    MachineNotation notation = MachineNotation::Table;
    std::string region; ///< one of `machineRegions()`; empty: the whole machine
};
/// Prints the plugin's machine as the transition tables that this program was built with have it.
void drawMachine(const MachineOptions& options);

struct WatchOptions {
    std::filesystem::path module;
    std::string logLevel;           ///< one of `logLevels`, or empty to leave the log out
    std::filesystem::path scenario; ///< of the stand-in service; empty for its usual one
    PluginInterface way = PluginInterface::Cpp;
    std::filesystem::path recording; ///< the session file to write; empty: none
    bool keepsSecrets = false;       ///< in the recording
};
/// Runs the module and prints what its user would see, until the program is interrupted.
void watchScreen(const WatchOptions& options);

struct ServeOptions {
    std::filesystem::path module;
    std::string logLevel;                 ///< one of `logLevels`: of the log lines that viewers get
    std::filesystem::path scenario;       ///< of the stand-in service; empty for its usual one
    unsigned short port = 0;              ///< 0: any that is free
    bool keepsSecrets = false;            ///< in recordings
    std::uint32_t slowness = 0;           ///< milliseconds that the host takes for each notice
    std::filesystem::path recording = {}; ///< the session file to write at the end; empty: none
};
/// Runs the module and shows its screen to browsers on this machine, until the program is interrupted.
void serveScreen(const ServeOptions& options);

struct ValidateOptions {
    std::filesystem::path module;
    PluginInterface way = PluginInterface::Cpp;
    std::string include = {};               ///< what the names of the checks contain; empty: all
    std::optional<std::uint32_t> seed = {}; ///< for random orders; none: another one each time
    std::uint32_t limitSeconds = 20;        ///< for each check
    bool asJson = false;
    bool lists = false;         ///< the checks, instead of running them
    std::string onlyCheck = {}; ///< runs this one in this process, as the children do; "load": none
};
/// Holds a module against the checks, each in a process of its own, and prints what comes of them.
/// @return whether all passed
bool validateModule(const ValidateOptions& options);

struct BundleOptions {
    std::filesystem::path file; ///< to be written
    std::filesystem::path module;
    PluginInterface way = PluginInterface::Cpp;
    std::filesystem::path session = {};   ///< what happened; empty: the module is run shortly
    std::chrono::seconds length{3};       ///< of that run
    std::filesystem::path systemLog = {}; ///< lines that the system has kept; empty: none
    bool loadsModule = true;              ///< whether the module may be loaded at all
    bool isConfirmed = false;             ///< whether it is written without asking
    bool replaces = false;                ///< whether a file that is there already may go
};
/// Collects what a diagnosis needs, without secrets, shows what it is, and writes it as a ZIP archive that
/// only its owner may read.
/// @return whether it was written; not if the user does not want it
bool writeBundle(const BundleOptions& options);

} // namespace host
