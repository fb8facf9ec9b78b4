#include "tests/support/Holdings.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cstdint>
#include <vector>

namespace test {

namespace {

constexpr DWORD mostSlots = 64 + 1024; ///< a process can have
constexpr std::uintptr_t highestHandle = 0x8000;

/// All heaps' blocks. A heap that is walked stands still.
std::size_t heapBytes() {
    std::vector<HANDLE> heaps(::GetProcessHeaps(0, nullptr) + 8);
    heaps.resize(::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    std::size_t bytes = 0;
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heap);
        while (::HeapWalk(heap, &entry)) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
        ::HeapUnlock(heap);
    }
    return bytes;
}

/// By asking for each: Wine's count of them is always 0.
std::size_t openHandles() {
    std::size_t count = 0;
    for (std::uintptr_t value = 4; value < highestHandle; value += 4) {
        DWORD flags = 0;
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return count;
}

std::size_t mappedRegions() {
    MEMORY_BASIC_INFORMATION region{};
    std::size_t count = 0;
    for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof region) == sizeof region;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        count += region.State != MEM_FREE ? 1 : 0;
    }
    return count;
}

/// By taking all that are left.
std::size_t takenSlots() {
    std::vector<DWORD> slots;
    for (DWORD slot = ::TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = ::TlsAlloc()) {
        slots.push_back(slot);
    }
    for (const DWORD slot : slots) {
        ::TlsFree(slot);
    }
    return mostSlots - slots.size();
}

} // namespace

std::size_t runningThreads() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    std::size_t count = 0;
    for (BOOL more = ::Thread32First(snapshot, &thread); more; more = ::Thread32Next(snapshot, &thread)) {
        count += thread.th32OwnerProcessID == ::GetCurrentProcessId() ? 1 : 0;
    }
    ::CloseHandle(snapshot);
    return count;
}

Holdings holdings() {
    const std::size_t slots =
        takenSlots(); // the first call leaves the thread's own table for them on the heap
    return {heapBytes(), openHandles(), runningThreads(), mappedRegions(), slots};
}

} // namespace test
