// A module that logs a line, writes to the output of the process and ends it when a plugin is asked for.
#include "tests/host/module-system/ModuleSystem.h"
#include "wren/Plugin.h"

#include <cstdio>

extern "C" {

PluginInterfaceList GetAvailableInterfaces() { return {nullptr, 0}; }

Plugin* CreatePlugin(const char*) {
    test::module_system::log("the last words");
    std::puts("{\"output\":7}\n[1]\n{\"output\":{}");
    std::fflush(stdout);
    test::module_system::crash();
}

bool DisposePlugin(Plugin*) { return true; }
}
