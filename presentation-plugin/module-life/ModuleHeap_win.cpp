// The libraries in the module keep memory until the process ends, such as records of threads and locks of
// static objects. So the linker finds the functions of this file in place of the C library's for memory.
// Every block of the module comes from one heap, which is destroyed at its unloading. What the C library
// itself allocates stays its own.
#include "presentation-plugin/module-life/ModuleHeap_win.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace moduleLife {
namespace {

HANDLE heap = nullptr;

void* allocate(DWORD flags, std::size_t size) {
    const HANDLE from = moduleHeap();
    void* block = from != nullptr ? ::HeapAlloc(from, flags, size) : nullptr;
    if (block == nullptr) {
        errno = ENOMEM;
    }
    return block;
}

} // namespace

HANDLE moduleHeap() {
    if (heap == nullptr) {
        heap = ::HeapCreate(0, 0, 0);
    }
    return heap;
}

void destroyModuleHeap() {
    if (heap != nullptr) {
        ::HeapDestroy(heap);
    }
}

} // namespace moduleLife

extern "C" {

// The names behind __asm__ are the C library's as the linker knows them: with an underscore.
void* moduleMalloc(std::size_t size) __asm__("_malloc");
void* moduleCalloc(std::size_t count, std::size_t size) __asm__("_calloc");
void* moduleRealloc(void* block, std::size_t size) __asm__("_realloc");
void moduleFree(void* block) __asm__("_free");

void* moduleMalloc(std::size_t size) { return moduleLife::allocate(0, size); }

void* moduleCalloc(std::size_t count, std::size_t size) {
    if (size != 0 && count > SIZE_MAX / size) {
        errno = ENOMEM;
        return nullptr;
    }
    return moduleLife::allocate(HEAP_ZERO_MEMORY, count * size);
}

void* moduleRealloc(void* block, std::size_t size) {
    if (block == nullptr) {
        return moduleMalloc(size);
    }
    if (size == 0) {
        moduleFree(block);
        return nullptr;
    }
    void* moved = ::HeapReAlloc(moduleLife::moduleHeap(), 0, block, size);
    if (moved == nullptr) {
        errno = ENOMEM;
    }
    return moved;
}

void moduleFree(void* block) {
    if (block != nullptr) {
        ::HeapFree(moduleLife::moduleHeap(), 0, block);
    }
}

// The C library's functions whose result the caller frees.
char* moduleStrdup(const char* text) __asm__("_strdup");
char* moduleUnderscoreStrdup(const char* text) __asm__("__strdup");
wchar_t* moduleGetcwd(wchar_t* buffer, int size) __asm__("__wgetcwd");

char* moduleStrdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* copy = moduleMalloc(size);
    return copy != nullptr ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

char* moduleUnderscoreStrdup(const char* text) { return moduleStrdup(text); }

wchar_t* moduleGetcwd(wchar_t* buffer, int size) {
    const DWORD needed = ::GetCurrentDirectoryW(0, nullptr);
    const DWORD room = buffer != nullptr ? static_cast<DWORD>(size) : needed;
    if (room < needed) {
        errno = ERANGE;
        return nullptr;
    }
    auto* folder = buffer != nullptr ? buffer : static_cast<wchar_t*>(moduleMalloc(room * sizeof(wchar_t)));
    return folder != nullptr && ::GetCurrentDirectoryW(room, folder) < room ? folder : nullptr;
}

// Code that calls a function of another library goes through a pointer. Boost takes memory from the process's
// heap.
extern const decltype(&moduleUnderscoreStrdup) importOfStrdup __asm__("__imp___strdup");
extern const decltype(&moduleGetcwd) importOfGetcwd __asm__("__imp___wgetcwd");
extern const decltype(&moduleLife::moduleHeap) importOfProcessHeap __asm__("__imp__GetProcessHeap@0");
const decltype(&moduleUnderscoreStrdup) importOfStrdup = &moduleUnderscoreStrdup;
const decltype(&moduleGetcwd) importOfGetcwd = &moduleGetcwd;
const decltype(&moduleLife::moduleHeap) importOfProcessHeap = &moduleLife::moduleHeap;
}
