// The function that the loader calls, around the C library's own. When the module is unloaded, what is left
// of it is given back here, after the last destructor has run.
#include "presentation-plugin/module-life/BorrowedObjects_win.h"
#include "presentation-plugin/module-life/ModuleHeap_win.h"

#include <windows.h>

#include <openssl/crypto.h>

#include <cstdlib>

extern "C" {

BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved);

/// The linker is given its name.
BOOL WINAPI moduleEntry(HINSTANCE module, DWORD reason, LPVOID reserved) {
    // When the process ends, its other threads have been stopped wherever they were, perhaps inside a lock. A
    // destructor that waits for one would hang, and the system takes back everything by itself.
    const bool processEnds = reserved != nullptr;
    if (reason == DLL_PROCESS_DETACH && processEnds) {
        return TRUE;
    }
    if (reason == DLL_PROCESS_ATTACH && moduleLife::moduleHeap() == nullptr) {
        return FALSE;
    }
    if (reason == DLL_THREAD_DETACH) {
        OPENSSL_thread_stop(); // libcrypto is not told that a thread ends where it is part of a module
    }
    const BOOL done = DllMainCRTStartup(module, reason, reserved);
    if (reason == DLL_PROCESS_DETACH) {
        moduleLife::giveBackBorrowedObjects();
        moduleLife::destroyModuleHeap();
    }
    return done;
}

/// libcrypto registers its end with it. The C library's function would call that at the end of the process,
/// when the module may have gone.
_onexit_t moduleOnexit(_onexit_t function) __asm__("__onexit");
_onexit_t moduleOnexit(_onexit_t function) {
    // The function's result is never used.
    return std::atexit(reinterpret_cast<void (*)()>(function)) == 0 ? function : nullptr;
}
}
