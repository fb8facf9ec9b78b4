// Unloads the module as soon as its plugin has been disposed of, again and again, beside a service whose
// threads deliver all the time: UnloadLoop MODULE ROUNDS THREADS. Whatever such a thread had still to
// do in the module would run into freed code. Every other round, the service lets go of its weak pointer only
// after the module has gone.
//
// Says what is wrong and exits with 1.

#include "host/LogLevel.h"
#include "host/PluginModule.h"
#include "host/SharedLibrary.h"
#include "tests/module/unload/BusyService.h"
#include "tests/support/QuietHost.h"

#include <charconv>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <thread>

namespace {

/// From start to dispose, and some of them past it.
constexpr unsigned long documentsOfARound = 4;

/// One life of the module.
/// @return what is wrong; empty if nothing is
std::string runRound(const std::filesystem::path& file) {
    test::QuietHost quiet;
    {
        const host::PluginModule module(file);
        const host::OwnedPlugin plugin(module.create("com.norvane.vantor.presentation"),
                                       host::PluginOwner(module));
        const unsigned long before = busyDeliveries();
        if (plugin == nullptr || plugin->Register("", 1, &quiet, &quiet) != 0 || plugin->Start() != 0) {
            return "the plugin does not start";
        }
        while (busyDeliveries() < before + documentsOfARound) {
            std::this_thread::yield();
        }
    }
    if (host::SharedLibrary::findLoaded(file.filename().string())) {
        return "the module is still there";
    }
    return quiet.notices > 0 ? "" : "no notice came";
}

std::string loop(const std::filesystem::path& file, unsigned rounds) {
    for (unsigned round = 0; round < rounds; ++round) {
        const bool isKept = round % 2 == 1;
        busyKeepReceiver(isKept);
        const std::string fault = runRound(file);
        if (!fault.empty()) {
            return fault + " in round " + std::to_string(round);
        }
        if (isKept) {
            busyForgetReceiver();
        }
    }
    return "";
}

bool readNumber(const char* text, unsigned& number) {
    return std::from_chars(text, text + std::strlen(text), number).ec == std::errc();
}

} // namespace

int main(int argc, char** argv) {
    unsigned rounds = 0;
    unsigned threads = 0;
    if (argc != 4 || !readNumber(argv[2], rounds) || !readNumber(argv[3], threads)) {
        std::cerr << "usage: UnloadLoop MODULE ROUNDS THREADS\n";
        return 2;
    }
    const host::LogLevelFolder folder("DBG_ERROR");
    busyBegin(threads);
    const std::string fault = loop(argv[1], rounds);
    busyEnd();
    if (!fault.empty()) {
        std::cerr << fault << '\n';
        return 1;
    }
    std::cout << rounds << " rounds, " << busyDeliveries() << " documents\n";
    return 0;
}
