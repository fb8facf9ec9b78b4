#include "tests/host/module-system/ModuleSystem.h"

#include <dlfcn.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdlib>

namespace test::module_system {

void log(const std::string& line) { ::syslog(LOG_INFO, "%s", line.c_str()); }

void crash() { std::abort(); }

void leave(int exitCode) { ::_exit(exitCode); }

void hang() {
    for (;;) {
        ::pause();
    }
}

OtherModule::OtherModule(const char* file)
    : handle(::dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr) {
        crash();
    }
}

OtherModule::~OtherModule() { ::dlclose(handle); }

void* OtherModule::symbol(const char* name) const { return ::dlsym(handle, name); }

} // namespace test::module_system
