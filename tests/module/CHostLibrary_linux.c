#include "tests/module/CHostLibrary.h"

#include <dlfcn.h>
#include <stdio.h>

void* openModule(const char* file) {
    void* const module = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (module == NULL) {
        fprintf(stderr, "%s\n", dlerror());
    }
    return module;
}

void* findInModule(void* module, const char* name) { return dlsym(module, name); }

void closeModule(void* module) { dlclose(module); }
