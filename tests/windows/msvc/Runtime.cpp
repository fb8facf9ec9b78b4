#include "tests/windows/msvc/Runtime.h"

void* operator new(size_t size) { return malloc(size); }
void operator delete(void* memory) noexcept { free(memory); }
void operator delete(void* memory, size_t) noexcept { free(memory); }

/// Of the records that `typeid` reads: their class is the compiler's own, and nothing here deletes one.
extern "C" const void* const typeInfoTable[1] __asm__("??_7type_info@@6B@");
const void* const typeInfoTable[1] = {nullptr};

extern "C" int _purecall() { exit(97); }

/// Says that code with floating point numbers is linked in.
extern "C" int _fltused = 0;
