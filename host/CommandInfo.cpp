#include "host/Commands.h"
#include "host/HostError.h"
#include "host/ModuleInfo.h"
#include "host/Text.h"

#include <boost/json/serialize.hpp>

#include <iostream>
#include <string>
#include <utility>

namespace host {
namespace {

void printText(const ModuleInfo& info) {
    std::cout << "module           " << printable(info.path) << '\n'
              << "identity         " << printable(info.identity) << '\n'
              << "label            " << printable(info.label) << '\n'
              << "display version  " << printable(info.displayVersion) << '\n';
    const char* heading = "interfaces       ";
    for (const auto& [name, version] : info.interfaces) {
        std::cout << std::exchange(heading, "                 ") << printable(name) << " (version " << version
                  << ")\n";
    }
    heading = "exports          ";
    for (const std::string& symbol : info.exports) {
        std::cout << std::exchange(heading, "                 ") << printable(symbol) << '\n';
    }
}

} // namespace

void showInfo(const InfoOptions& options) {
    const ModuleInfo info = examineModule(options.module, options.way);
    if (options.asJson) {
        std::cout << boost::json::serialize(jsonOf(info)) << '\n';
    } else {
        printText(info);
    }
    if (!std::cout.flush()) {
        throw HostError("cannot write the output");
    }
}

} // namespace host
