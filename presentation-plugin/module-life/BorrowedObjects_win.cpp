// The libraries in the module keep system objects until a thread or the process ends: events and a handle for
// each thread, semaphores of static locks, indices of thread-local storage. A process has only about a
// thousand of these indices. So the linker finds the functions of this file in place of those that make and
// free such objects. What is left at the module's unloading is given back.
#include "presentation-plugin/module-life/BorrowedObjects_win.h"

#include "presentation-plugin/module-life/ModuleHeap_win.h"

#include <windows.h>

#include <cstdint>

namespace moduleLife {
namespace {

/// What was taken with one function and not yet given back with its counterpart.
class Borrowed {
public:
    /// @return whether there was memory for it
    bool add(void* object) {
        const HANDLE heap = moduleHeap();
        auto* entry = heap != nullptr ? static_cast<Entry*>(::HeapAlloc(heap, 0, sizeof(Entry))) : nullptr;
        if (entry == nullptr) {
            return false;
        }
        entry->object = object;
        ::AcquireSRWLockExclusive(&lock);
        entry->next = first;
        first = entry;
        ::ReleaseSRWLockExclusive(&lock);
        return true;
    }

    void remove(void* object) {
        ::AcquireSRWLockExclusive(&lock);
        Entry** at = &first;
        while (*at != nullptr && (*at)->object != object) {
            at = &(*at)->next;
        }
        Entry* found = *at;
        if (found != nullptr) {
            *at = found->next;
        }
        ::ReleaseSRWLockExclusive(&lock);
        if (found != nullptr) {
            ::HeapFree(moduleHeap(), 0, found);
        }
    }

    /// Takes all out, one after the other.
    template <class GiveBack>
    void drain(GiveBack giveBack) {
        while (first != nullptr) {
            Entry* entry = first;
            first = entry->next;
            giveBack(entry->object);
            ::HeapFree(moduleHeap(), 0, entry);
        }
    }

private:
    struct Entry {
        Entry* next;
        void* object;
    };
    SRWLOCK lock = SRWLOCK_INIT;
    Entry* first = nullptr;
};

// They are in use before the module's constructors run.
constinit Borrowed handles;
constinit Borrowed slots;
constinit Borrowed sections;

/// The system's own functions.
struct System {
    decltype(&::TlsAlloc) tlsAlloc;
    decltype(&::TlsFree) tlsFree;
    decltype(&::CreateEventA) createEvent;
    decltype(&::OpenEventA) openEvent;
    decltype(&::CreateSemaphoreA) createSemaphore;
    decltype(&::CreateWaitableTimerA) createTimer;
    decltype(&::DuplicateHandle) duplicateHandle;
    decltype(&::CloseHandle) closeHandle;
    decltype(&::InitializeCriticalSection) initializeSection;
    decltype(&::DeleteCriticalSection) deleteSection;
};

/// Found by the first call, which is the loader's.
const System& system() {
    static constinit System functions{};
    if (functions.deleteSection == nullptr) {
        const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
        const auto find = [kernel](auto& function, const char* name) {
            // The way around a function pointer type is the compiler's, which knows nothing of late binding.
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                reinterpret_cast<void*>(::GetProcAddress(kernel, name)));
        };
        find(functions.tlsAlloc, "TlsAlloc");
        find(functions.tlsFree, "TlsFree");
        find(functions.createEvent, "CreateEventA");
        find(functions.openEvent, "OpenEventA");
        find(functions.createSemaphore, "CreateSemaphoreA");
        find(functions.createTimer, "CreateWaitableTimerA");
        find(functions.duplicateHandle, "DuplicateHandle");
        find(functions.closeHandle, "CloseHandle");
        find(functions.initializeSection, "InitializeCriticalSection");
        find(functions.deleteSection, "DeleteCriticalSection");
    }
    return functions;
}

/// An index as an entry of a list.
void* entryOf(DWORD slot) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(slot)); }

/// A handle that cannot be remembered is not taken.
HANDLE remembered(HANDLE handle) {
    if (handle != nullptr && !handles.add(handle)) {
        system().closeHandle(handle);
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return handle;
}

DWORD WINAPI takeSlot() {
    const DWORD slot = system().tlsAlloc();
    if (slot != TLS_OUT_OF_INDEXES && !slots.add(entryOf(slot))) {
        system().tlsFree(slot);
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return TLS_OUT_OF_INDEXES;
    }
    return slot;
}

BOOL WINAPI returnSlot(DWORD slot) {
    slots.remove(entryOf(slot));
    return system().tlsFree(slot);
}

HANDLE WINAPI takeEvent(LPSECURITY_ATTRIBUTES security, BOOL manual, BOOL set, LPCSTR name) {
    return remembered(system().createEvent(security, manual, set, name));
}

HANDLE WINAPI takeNamedEvent(DWORD access, BOOL inherited, LPCSTR name) {
    return remembered(system().openEvent(access, inherited, name));
}

HANDLE WINAPI takeSemaphore(LPSECURITY_ATTRIBUTES security, LONG count, LONG most, LPCSTR name) {
    return remembered(system().createSemaphore(security, count, most, name));
}

HANDLE WINAPI takeTimer(LPSECURITY_ATTRIBUTES security, BOOL manual, LPCSTR name) {
    return remembered(system().createTimer(security, manual, name));
}

BOOL WINAPI takeDuplicate(HANDLE fromProcess, HANDLE from, HANDLE toProcess, LPHANDLE to, DWORD access,
                          BOOL inherited, DWORD options) {
    if ((options & DUPLICATE_CLOSE_SOURCE) != 0) {
        handles.remove(from);
    }
    const BOOL done = system().duplicateHandle(fromProcess, from, toProcess, to, access, inherited, options);
    if (!done || to == nullptr || toProcess != ::GetCurrentProcess()) {
        return done;
    }
    *to = remembered(*to);
    return *to != nullptr;
}

BOOL WINAPI returnHandle(HANDLE handle) {
    handles.remove(handle);
    return system().closeHandle(handle);
}

/// One that cannot be remembered works all the same, but the system's record of it stays behind.
void WINAPI takeSection(LPCRITICAL_SECTION section) {
    system().initializeSection(section);
    sections.add(section);
}

void WINAPI returnSection(LPCRITICAL_SECTION section) {
    sections.remove(section);
    system().deleteSection(section);
}

} // namespace

void giveBackBorrowedObjects() {
    const System& to = system();
    sections.drain([&to](void* section) { to.deleteSection(static_cast<LPCRITICAL_SECTION>(section)); });
    handles.drain([&to](void* handle) { to.closeHandle(handle); });
    slots.drain(
        [&to](void* slot) { to.tlsFree(static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(slot))); });
}

} // namespace moduleLife

// Code that calls a function of another library goes through a pointer. The pointer's name ends with the size
// of the arguments.
#define WREN_REPLACES(function, size, replacement)                                                           \
    extern "C" const decltype(&::function) importOf##function __asm__("__imp__" #function "@" #size);        \
    extern "C" const decltype(&::function) importOf##function = &moduleLife::replacement

WREN_REPLACES(TlsAlloc, 0, takeSlot);
WREN_REPLACES(TlsFree, 4, returnSlot);
WREN_REPLACES(CreateEventA, 16, takeEvent);
WREN_REPLACES(OpenEventA, 12, takeNamedEvent);
WREN_REPLACES(CreateSemaphoreA, 16, takeSemaphore);
WREN_REPLACES(CreateWaitableTimerA, 12, takeTimer);
WREN_REPLACES(DuplicateHandle, 28, takeDuplicate);
WREN_REPLACES(CloseHandle, 4, returnHandle);
WREN_REPLACES(InitializeCriticalSection, 4, takeSection);
WREN_REPLACES(DeleteCriticalSection, 4, returnSection);
