// A module as GCC builds it by its own rules: its class has two slots for the destructor. A host must see
// that before it calls a slot.
#include "wren/PluginInterfaces.h"

#include <cstdlib>

class __declspec(dllexport) Plugin {
public:
    virtual bool SupportsInterface(const char* name, int version) = 0;
    virtual ~Plugin();
};

Plugin::~Plugin() = default;

extern "C" {
__declspec(dllexport) PluginInterfaceList GetAvailableInterfaces() { return {nullptr, 0}; }
__declspec(dllexport) Plugin* CreatePlugin(const char*) { std::abort(); }
__declspec(dllexport) bool DisposePlugin(Plugin*) { std::abort(); }
}
