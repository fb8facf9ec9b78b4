// A class of a Visual C++ program that derives from the module's exported one: its constructors, its
// assignment and its destructor come from the module. It ends with 0 if all of them could be called.
#include "wren/PresentationPlugin.h"

class Derived final : public Plugin {
public:
    bool SupportsInterface(const char*, int) override { return true; }
};

// What that compiler's library would bring.
void operator delete(void*) noexcept {}
void operator delete(void*, decltype(sizeof 0)) noexcept {}
extern "C" int _purecall() { return 0; }
extern "C" const void* const typeInfoTable[1] __asm__("??_7type_info@@6B@");
const void* const typeInfoTable[1] = {nullptr};

static bool isDone() {
    Derived first;
    Derived second(first);
    second = first;
    Plugin& plugin = second;
    return plugin.SupportsInterface("", 3);
}

extern "C" int start() { return isDone() ? 0 : 1; }
