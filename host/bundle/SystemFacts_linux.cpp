#include "host/bundle/SystemFacts.h"

#include <fstream>
#include <pwd.h>
#include <string_view>
#include <sys/utsname.h>
#include <unistd.h>

namespace host::bundle {
namespace {

/// The distribution's name for people; empty where it has none.
std::string distribution() {
    constexpr std::string_view key = "PRETTY_NAME=";
    std::ifstream file("/etc/os-release");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(key)) {
            std::string name = line.substr(key.size());
            std::erase(name, '"');
            return name;
        }
    }
    return {};
}

std::map<std::string, std::string> environment() {
    std::map<std::string, std::string> variables;
    for (char** entry = ::environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos) {
            variables.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    return variables;
}

} // namespace

SystemFacts systemFacts() {
    SystemFacts facts;
    facts.environment = environment();
    utsname names{};
    if (::uname(&names) == 0) {
        facts.system.append(names.sysname)
            .append(" ")
            .append(names.release)
            .append(" ")
            .append(names.machine);
        facts.hostName = names.nodename;
    }
    if (const std::string name = distribution(); !name.empty()) {
        facts.system.append(" (").append(name).append(")");
    }
    if (const passwd* const entry = ::getpwuid(::getuid()); entry != nullptr) { // no other thread runs yet
        facts.userNames.emplace_back(entry->pw_name);
        facts.homeFolders.emplace_back(entry->pw_dir);
    }
    for (const char* variable : {"USER", "LOGNAME", "SUDO_USER"}) {
        facts.userNames.push_back(facts.environment[variable]);
    }
    facts.homeFolders.push_back(facts.environment["HOME"]);
    return facts;
}

} // namespace host::bundle
