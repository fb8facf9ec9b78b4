// A module that logs a line, writes to the output of the process and ends it when a plugin is asked for.
#include "wren/Plugin.h"

#include <cstdio>
#include <cstdlib>
#include <syslog.h>

extern "C" {

PluginInterfaceList GetAvailableInterfaces() { return {nullptr, 0}; }

Plugin* CreatePlugin(const char*) {
    ::syslog(LOG_INFO, "%s", "the last words");
    std::puts("{\"output\":7}\n[1]\n{\"output\":{}");
    std::fflush(stdout);
    std::abort();
}

bool DisposePlugin(Plugin*) { return true; }
}
