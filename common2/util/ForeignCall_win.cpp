// An exception of Microsoft's compiler is a structured exception of the system. It finds its handlers through
// a list of frames that begins at fs:[0], in which GCC's functions do not stand; so the call gets a frame
// there.
#include "common2/util/ForeignCall.h"

#include <windows.h>

#include <cstdint>

namespace common2 {
namespace {

using Handler = EXCEPTION_DISPOSITION (*)(EXCEPTION_RECORD*, void*, CONTEXT*, void*);

/// Stands in the system's list for as long as it lives, whichever way the function ends.
struct CallFrame {
    CallFrame* previous = nullptr;
    Handler handler;
    void* resume[5] = {}; ///< where `__builtin_longjmp` goes

    explicit CallFrame(Handler used)
        : handler(used) {
        asm volatile("movl %%fs:0, %0" : "=r"(previous));
        asm volatile("movl %0, %%fs:0" : : "r"(this) : "memory");
    }
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;
    ~CallFrame() { asm volatile("movl %0, %%fs:0" : : "r"(previous) : "memory"); }
};

/// What that compiler throws: its number, and of its parameters the object and how to destroy it.
constexpr DWORD thrownObject = 0xE06D7363;
struct ThrowInfo {
    std::uint32_t attributes;
    void(__thiscall* destroy)(void* object); ///< null if there is nothing to destroy
};

void destroyThrown(const EXCEPTION_RECORD& exception) {
    if (exception.NumberParameters < 3) {
        return;
    }
    auto* const object = reinterpret_cast<void*>(exception.ExceptionInformation[1]);
    const auto* const info = reinterpret_cast<const ThrowInfo*>(exception.ExceptionInformation[2]);
    if (object != nullptr && info != nullptr && info->destroy != nullptr) {
        info->destroy(object);
    }
}

/// Has all frames below this one clean up. The system's function leaves no register but ebp as it was.
void unwindTo(CallFrame* frame, EXCEPTION_RECORD* exception) {
    asm volatile("pushl $0\n\t"
                 "pushl %%ecx\n\t"
                 "pushl $1f\n\t"
                 "pushl %%eax\n\t"
                 "call _RtlUnwind@16\n"
                 "1:"
                 : "+a"(frame), "+c"(exception)
                 :
                 : "ebx", "edx", "esi", "edi", "memory", "cc");
}

} // namespace

extern "C" {

/// Called by the system for the frame at `establisher`: at first to ask, then if a handler above was taken.
EXCEPTION_DISPOSITION wrenForeignCallHandler(EXCEPTION_RECORD* exception, void* establisher, CONTEXT*,
                                             void*) {
    auto* const volatile frame = static_cast<CallFrame*>(establisher);
    if ((exception->ExceptionFlags & EXCEPTION_EXIT_UNWIND) != 0) {
        return ExceptionContinueSearch; // the thread ends
    }
    const bool isSkipped = (exception->ExceptionFlags & EXCEPTION_UNWINDING) != 0;
    if (!isSkipped) {
        if (exception->ExceptionCode != thrownObject) {
            return ExceptionContinueSearch; // a crash stays one
        }
        unwindTo(frame, exception);
        destroyThrown(*exception);
    }
    __builtin_longjmp(frame->resume, 1);
}
}

// The system runs a handler only if the file's list of handlers names it, whatever an attacker writes over a
// frame. The list stands in a record that scripts/windows/finish-library makes known to the loader.
asm(".section .rdata,\"dr\"\n"
    "\t.balign 4\n"
    "wrenHandlers:\n"
    "\t.rva _wrenForeignCallHandler\n"
    "\t.globl __load_config_used\n"
    "__load_config_used:\n" // IMAGE_LOAD_CONFIG_DIRECTORY32
    "\t.long 72\n"          // its size
    "\t.zero 60\n"
    "\t.long wrenHandlers, 1\n" // the list, and how many it names
    "\t.text\n");

bool runForeignCall(void (*call)(void* context), void* context) {
    CallFrame frame(&wrenForeignCallHandler);
    if (__builtin_setjmp(frame.resume) != 0) {
        return false;
    }
    call(context);
    return true;
}

} // namespace common2
