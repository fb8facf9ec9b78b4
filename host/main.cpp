#include "host/Commands.h"
#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/PluginModule.h"
#include "host/StandardStreams.h"
#include "host/Text.h"
#include "host/bundle/ModuleRun.h"
#include "presentation-plugin/machine-description/MachineDrawing.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr int exitDifference = 1;
constexpr int exitBadInput = 2;

int fail(const std::string& what) {
    std::cerr << "wren-host: " << host::printable(what.substr(0, what.find('\n'))) << '\n';
    return exitBadInput;
}

void addLogLevel(CLI::App& command, std::string& level, const char* help) {
    const std::vector<std::string> levels(std::begin(host::logLevels), std::end(host::logLevels));
    command.add_option("--log", level, help)->type_name("LEVEL")->check(CLI::IsMember(levels));
}

void addModule(CLI::App& command, const char* name, std::filesystem::path& module) {
    command.add_option(name, module, "The plugin module; its own build's unless told")->type_name("PATH");
}

/// @param way of type host::PluginInterface or an optional one
template <class Way>
void addInterface(CLI::App& command, Way& way, const char* help) {
    const auto choose = [&way](const std::string& name) {
        way = name == "c" ? host::PluginInterface::C : host::PluginInterface::Cpp;
    };
    command.add_option_function<std::string>("--interface", choose, help)
        ->type_name("INTERFACE")
        ->check(CLI::IsMember({"cpp", "c"}));
}

void addRecording(CLI::App& command, std::filesystem::path& recording, bool& keepsSecrets) {
    command
        .add_option("--record", recording,
                    "Write what happens to a session file, which \"replay\" runs again, at the end")
        ->type_name("FILE");
    command.add_flag("--with-secrets", keepsSecrets,
                     "Keep cookies, values of browsers and queries of URLs in recordings");
}

constexpr const char* interfaceHelp =
    "Use the module's class (cpp, unless told) or its record of C functions (c)";
constexpr const char* scriptInterfaceHelp =
    "Make all objects as the module's class (cpp) or as its record of C functions (c), whatever \"kind\" "
    "their lines hold; the names in \"create\" lines get the C interface's \"c_\" or lose it, so that a "
    "session runs unchanged either way. Each line decides unless told";

void addMachine(CLI::App& app, host::MachineOptions& machine) {
    CLI::App& draws = *app.add_subcommand(
        "machine", "Print the plugin's machine: states, regions, events, guards and actions");
    CLI::Option_group& notations = *draws.add_option_group("notation");
    notations.require_option(1);
    const auto addNotation = [&](const char* name, host::MachineNotation chosen, const char* help) {
        notations.add_flag_callback(
            name, [&machine, chosen] { machine.notation = chosen; }, help);
    };
    addNotation("--dot", host::MachineNotation::Dot, "For Graphviz");
    addNotation("--mermaid", host::MachineNotation::Mermaid, "For Mermaid, a state diagram");
    addNotation("--table", host::MachineNotation::Table, "As tables in Markdown");
    draws.add_option("--region", machine.region, "This region alone; the whole machine unless told")
        ->type_name("REGION")
        ->check(CLI::IsMember(machineRegions()));
    draws.callback([&machine] { host::drawMachine(machine); });
}

/// The options of all commands and the command that was chosen.
struct CommandLine {
    CommandLine() {
        app.require_subcommand(1);
        app.allow_windows_style_options(false); // a path may begin with a slash on every system

        CLI::App& runsScript = *app.add_subcommand("script", "Run a session file and print what comes of it");
        runsScript.add_option("FILE", script.file, "The session file")->required();
        addLogLevel(runsScript, script.logLevel, "Lowest level of the log lines, DBG_TRACE unless told");
        addModule(runsScript, "--module", script.module);
        addInterface(runsScript, script.onlyInterface, scriptInterfaceHelp);
        runsScript.add_flag("--strict", script.isStrict,
                            "Look for broken rules and print them to standard error; exit code 1 tells that "
                            "there were some");
        runsScript.callback([this] { isAsExpected = host::runScript(script); });

        CLI::App& replays = *app.add_subcommand(
            "replay", "Run a session file and compare what comes of it with the outputs that it holds; exit "
                      "code 1 tells of a difference");
        replays.add_option("FILE", replay.file, "The session file")->required();
        addLogLevel(replays, replay.logLevel, "Lowest level of the log lines, DBG_TRACE unless told");
        addModule(replays, "--module", replay.module);
        addInterface(replays, replay.onlyInterface, scriptInterfaceHelp);
        replays.callback([this] { isAsExpected = host::replaySession(replay); });

        CLI::App& watches = *app.add_subcommand(
            "watch", "Print what the plugin shows, and take typed commands, until interrupted");
        addLogLevel(watches, watch.logLevel, "Print the log too, from this level on");
        addModule(watches, "--module", watch.module);
        addInterface(watches, watch.way, interfaceHelp);
        watches
            .add_option("--scenario", watch.scenario, "State and faults of the stand-in service, a JSON file")
            ->type_name("FILE");
        addRecording(watches, watch.recording, watch.keepsSecrets);
        watches.callback([this] { host::watchScreen(watch); });

        CLI::App& serves = *app.add_subcommand(
            "serve", "Show the plugin's screen in browsers on this machine, until interrupted");
        addLogLevel(serves, serve.logLevel, "Lowest level of the log lines, DBG_TRACE unless told");
        addModule(serves, "--module", serve.module);
        serves.add_option("--port", serve.port, "Port to listen on; any that is free unless told");
        serves
            .add_option("--scenario", serve.scenario, "State and faults of the stand-in service, a JSON file")
            ->type_name("FILE");
        addRecording(serves, serve.recording, serve.keepsSecrets);
        serves
            .add_option("--slow", serve.slowness,
                        "Milliseconds that the host takes for each notice, 5000 at most")
            ->type_name("MS")
            ->check(CLI::Range(0, 5000));
        serves.callback([this] { host::serveScreen(serve); });

        addMachine(app, machine);

        CLI::App& informs = *app.add_subcommand("info", "Tell what a module is and offers");
        addModule(informs, "MODULE", info.module);
        informs.add_flag("--json", info.asJson, "As JSON");
        addInterface(informs, info.way, interfaceHelp);
        informs.callback([this] { host::showInfo(info); });
        addValidate();
        addBundle();
        addRunForBundle();
    }

    CLI::App app{"Reference host for presentation plugins", "wren-host"};
    host::ScriptOptions script{{}, host::defaultModulePath(), "DBG_TRACE", {}, false};
    host::ScriptOptions replay = script;
    host::MachineOptions machine;
    bool isAsExpected = true;
    host::WatchOptions watch{host::defaultModulePath(), {}, {}, host::PluginInterface::Cpp, {}, false};
    host::ServeOptions serve{host::defaultModulePath(), "DBG_TRACE", {}, 0, false, 0};
    host::InfoOptions info{host::defaultModulePath(), false, host::PluginInterface::Cpp};
    host::ValidateOptions validate{host::defaultModulePath()};
    host::BundleOptions bundle{{}, host::defaultModulePath()};

private:
    /// What a bundle's child does. Not for users, so no help tells of it.
    void addRunForBundle() {
        CLI::App& runs = *app.add_subcommand("run-for-bundle")->group("");
        addModule(runs, "MODULE", bundle.module);
        addInterface(runs, bundle.way, interfaceHelp);
        runs.add_option_function<int>(
            "--seconds", [this](const int& count) { childsLength = std::chrono::seconds(count); });
        runs.callback([this] { host::bundle::printModuleRun(bundle.module, bundle.way, childsLength); });
    }

    void addValidate() {
        CLI::App& validates = *app.add_subcommand(
            "validate", "Hold a module against the rules between host and module; exit code 1 tells that "
                        "some check did not pass");
        addModule(validates, "MODULE", validate.module);
        addInterface(validates, validate.way, interfaceHelp);
        validates.add_option("--include", validate.include, "Only checks whose name contains NAME")
            ->type_name("NAME");
        validates
            .add_option("--seed", validate.seed,
                        "Of the checks with random orders; another each time unless told")
            ->type_name("N");
        validates.add_option("--limit", validate.limitSeconds, "Seconds for each check, 20 unless told")
            ->type_name("S")
            ->check(CLI::Range(1U, 3600U));
        validates.add_flag("--list", validate.lists, "Print the checks and what they ask for, and run none");
        validates.add_flag("--json", validate.asJson, "One JSON object a line");
        validates.add_option("--in-this-process", validate.onlyCheck)->group(""); // hidden: for the children
        validates.callback([this] { isAsExpected = host::validateModule(validate); });
    }

    void addBundle() {
        CLI::App& bundles = *app.add_subcommand(
            "bundle",
            "Collect what a diagnosis needs, without secrets, show it and write it as a ZIP archive");
        bundles.add_option("FILE", bundle.file, "The archive to write")->required();
        addModule(bundles, "--module", bundle.module);
        addInterface(bundles, bundle.way, interfaceHelp);
        auto* const session = bundles
                                  .add_option("--from", bundle.session,
                                              "Take what happened from a session file, not from a run")
                                  ->type_name("FILE");
        bundles
            .add_option_function<int>(
                "--seconds", [this](const int& count) { bundle.length = std::chrono::seconds(count); },
                "How long the module runs for the bundle, 3 unless told, 60 at most")
            ->type_name("N")
            ->check(CLI::Range(0, 60))
            ->excludes(session);
        bundles
            .add_option("--system-log", bundle.systemLog,
                        "Add the last lines of this file, such as what journalctl wrote")
            ->type_name("FILE");
        bundles.add_flag("!--no-load", bundle.loadsModule, "Do not load the module, which may crash or hang");
        bundles.add_flag("--yes", bundle.isConfirmed, "Write without asking");
        bundles.add_flag("--force", bundle.replaces, "Replace a file that is there already");
        bundles.callback([this] { isAsExpected = host::writeBundle(bundle); });
    }

    std::optional<std::chrono::seconds> childsLength;
};

} // namespace

int main(int argc, char** argv) {
    host::makeStandardStreamsBinary();
    try {
        CommandLine commandLine;
        try {
            commandLine.app.parse(argc, argv);
        } catch (const CLI::Success& wish) { // for help
            return commandLine.app.exit(wish);
        } catch (const CLI::Error& fault) {
            return fail(fault.what());
        }
        return commandLine.isAsExpected ? 0 : exitDifference;
    } catch (const std::exception& fault) {
        return fail(fault.what());
    }
}
