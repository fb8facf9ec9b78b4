/* A library that installs exception handlers and lists them in its load configuration, in the wrong order. */
#include <windows.h>

EXCEPTION_DISPOSITION __cdecl handleFirst(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                          void* dispatcher);
EXCEPTION_DISPOSITION __cdecl handleSecond(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                           void* dispatcher);
int callWithHandlers(int number);

EXCEPTION_DISPOSITION __cdecl handleFirst(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                          void* dispatcher) {
    return record == NULL || frame == NULL || context == NULL || dispatcher == NULL ? ExceptionNestedException
                                                                                    : ExceptionContinueSearch;
}

EXCEPTION_DISPOSITION __cdecl handleSecond(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                           void* dispatcher) {
    return handleFirst(record, frame, context, dispatcher);
}

int callWithHandlers(int number) {
    int result;
    __asm__ volatile("pushl %1\n\tpushl %%fs:0\n\tmovl %%esp, %%fs:0\n\t"
                     "movl %2, %0\n\t"
                     "popl %%fs:0\n\taddl $4, %%esp"
                     : "=&r"(result)
                     : "r"(handleFirst), "r"(number));
    return result;
}

extern const DWORD handlerTable[2];
__asm__(".section .rdata,\"dr\"\n.balign 4\n.globl _handlerTable\n_handlerTable:\n"
        ".rva _handleSecond\n.rva _handleFirst\n.text\n");

extern const IMAGE_LOAD_CONFIG_DIRECTORY32 _load_config_used;
const IMAGE_LOAD_CONFIG_DIRECTORY32 _load_config_used = {.Size = sizeof(IMAGE_LOAD_CONFIG_DIRECTORY32),
                                                         .SEHandlerTable = (DWORD)handlerTable,
                                                         .SEHandlerCount = 2};
