#include "host/Commands.h"
#include "host/ExportedSymbols.h"
#include "host/Files.h"
#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/OutputLines.h"
#include "host/SessionFile.h"
#include "host/StandardStreams.h"
#include "host/Text.h"
#include "host/bundle/Bundle.h"
#include "host/bundle/PrivateFile.h"
#include "host/system/DataFolder.h"

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>

#include <iomanip>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

/// Refuses before anything runs what could not be written in the end.
void checkFile(const fs::path& file, bool replaces) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(file, error);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_symlink(status)) {
        throw HostError(file.string() + " is not a file");
    }
    if (fs::exists(status) && !replaces) {
        throw HostError("there is a file " + file.string() + " already; --force replaces it");
    }
    const fs::path folder = fs::absolute(file).parent_path();
    if (!fs::is_directory(folder, error)) {
        throw HostError("there is no folder " + folder.string());
    }
}

/// Adds what a file tells of itself although it was not loaded.
void addExports(json::object& told, const fs::path& module) {
    addText(told, "module", module.string());
    try {
        const std::vector<std::string> exports = exportedSymbols(module);
        told.emplace("exports", json::array(exports.begin(), exports.end()));
    } catch (const HostError& fault) {
        told.emplace("file_problem", fault.what());
    }
}

/// @param session empty: what happened is found out by a run
bundle::ModuleReport reportOf(const BundleOptions& options, const std::optional<Session>& session) {
    bundle::ModuleReport report;
    if (options.loadsModule) {
        report = bundle::examineAndRun(options.module, options.way,
                                       session ? std::nullopt : std::optional(options.length));
    } else {
        report.module.emplace("problem", "it was not to be loaded");
        report.story.source = "nothing: the module was not to be loaded";
    }
    if (report.module.contains("problem")) {
        addExports(report.module, options.module);
    }
    if (session) {
        report.story = bundle::storyOf(*session);
    }
    return report;
}

json::object configuration() {
    const fs::path file = logConfigFile(programDataFolder());
    json::object told;
    addText(told, "path", file.string());
    try {
        addText(told, "json", readRegularFile(file));
    } catch (const HostError& fault) {
        told.emplace("problem", fault.what());
    }
    return told;
}

bundle::Bundle collect(const BundleOptions& options) {
    std::optional<Session> session;
    if (!options.session.empty()) {
        session = readSession(options.session);
    }
    bundle::Findings findings;
    findings.time = std::chrono::system_clock::now();
    findings.system = bundle::systemFacts();
    if (!options.systemLog.empty()) {
        findings.systemLog = readFile(options.systemLog);
    }
    findings.configuration = configuration();
    bundle::ModuleReport report = reportOf(options, session);
    findings.story = std::move(report.story);
    findings.module = std::move(report.module);
    return bundle::makeBundle(std::move(findings));
}

void printList(const bundle::Bundle& bundle) {
    for (std::size_t i = 0; i < bundle.files.size(); ++i) {
        std::cout << "  " << std::left << std::setw(20) << bundle.files[i].name << std::right << std::setw(9)
                  << bundle.files[i].content.size() << " bytes  " << bundle.summaries[i] << '\n';
    }
    std::cout << "Replaced: " << bundle.replaced << '\n';
}

void printAll(const bundle::Bundle& bundle) {
    for (const bundle::ArchiveFile& file : bundle.files) {
        std::cout << "\n== " << file.name << '\n';
        std::string_view rest = file.content;
        while (!rest.empty()) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            std::cout << printable(line) << '\n';
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        }
    }
}

/// Asks until there is an answer. The end of the input is one: no.
bool isWanted(const bundle::Bundle& bundle, const fs::path& file) {
    for (;;) {
        std::cout << "Write " << printable(file.string())
                  << "? [y]es, [s]how all of it, [N]o: " << std::flush;
        std::string answer;
        if (!std::getline(std::cin, answer) || answer.empty() || answer == "n" || answer == "no") {
            return false;
        }
        if (answer == "y" || answer == "yes") {
            return true;
        }
        if (answer == "s" || answer == "show") {
            printAll(bundle);
        }
    }
}

} // namespace

bool writeBundle(const BundleOptions& options) {
    checkFile(options.file, options.replaces);
    if (!options.isConfirmed && !standardInputIsTerminal()) {
        throw HostError("nobody can be asked: standard input is no terminal; --yes writes without asking");
    }
    const bundle::Bundle bundle = collect(options);
    std::cout << "The bundle holds:\n";
    printList(bundle);
    if (!options.isConfirmed && !isWanted(bundle, options.file)) {
        std::cout << "Nothing was written." << std::endl;
        return false;
    }
    const std::string archive = bundle::zipArchive(bundle.files, std::chrono::system_clock::now());
    bundle::writePrivateFile(options.file, archive, options.replaces);
    std::cout << "Written to " << printable(options.file.string()) << std::endl;
    return true;
}

} // namespace host
