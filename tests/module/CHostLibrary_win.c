#include "tests/module/CHostLibrary.h"

#include <stdint.h>
#include <stdio.h>
#include <windows.h>

void* openModule(const char* file) {
    const HMODULE module = LoadLibraryA(file);
    if (module == NULL) {
        fprintf(stderr, "%s: error %lu\n", file, GetLastError());
    }
    return module;
}

void* findInModule(void* module, const char* name) {
    return (void*)(uintptr_t)GetProcAddress((HMODULE)module, name);
}

void closeModule(void* module) { FreeLibrary((HMODULE)module); }
