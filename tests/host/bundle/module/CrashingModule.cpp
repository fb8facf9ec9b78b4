// A module that logs a line and ends the process when a plugin is asked for.
#include "wren/Plugin.h"

#include <cstdlib>
#include <syslog.h>

extern "C" {

PluginInterfaceList GetAvailableInterfaces() { return {nullptr, 0}; }

Plugin* CreatePlugin(const char*) {
    ::syslog(LOG_INFO, "%s", "the last words");
    std::abort();
}

bool DisposePlugin(Plugin*) { return true; }
}
