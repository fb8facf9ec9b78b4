#include "host/Commands.h"
#include "host/HostError.h"
#include "host/ModuleInfo.h"

#include <boost/json/serialize.hpp>

#include <iostream>
#include <string>
#include <utility>

namespace host {
namespace {

void printText(const ModuleInfo& info) {
    std::cout << "module           " << info.path << '\n'
              << "identity         " << info.identity << '\n'
              << "label            " << info.label << '\n'
              << "display version  " << info.displayVersion << '\n';
    const char* heading = "interfaces       ";
    for (const auto& [name, version] : info.interfaces) {
        std::cout << std::exchange(heading, "                 ") << name << " (version " << version << ")\n";
    }
    heading = "exports          ";
    for (const std::string& symbol : info.exports) {
        std::cout << std::exchange(heading, "                 ") << symbol << '\n';
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
