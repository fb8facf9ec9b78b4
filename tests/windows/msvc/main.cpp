// A host that the other compiler built, against the module that this one did:
//
//   foreign-host MODULE.dll SERVICE.dll [LIVES]   all checks, and so many loads and lives of the module
//   foreign-host MODULE.dll --refused             the module has no service that it can use
//
// Reports the first thing that is wrong and exits with 1.
#include "tests/windows/msvc/Host.h"

extern "C" int __getmainargs(int* count, char*** arguments, char*** environment, int wildcards, int* mode);

namespace foreign {
namespace {

struct Check {
    const char* name;
    void (*run)(const Libraries&);
};

constexpr Check checks[] = {
    {"every slot of the class", &checkTable},
    {"dynamic_cast and typeid", &checkTypeInformation},
    {"the exported class Plugin", &checkExportedClass},
    {"a life with an enrollment", &checkLife},
    {"delete", &checkDeletion},
    {"many plugins, one after the other", &checkManyPlugins},
    {"a service that fails", &checkServiceFaults},
    {"every function of the record", &checkRecord},
    {"a host that throws, by the class", &checkExceptions},
    {"a host that throws, by the record", &checkRecordExceptions},
    {"a service that throws", &checkServiceExceptions},
};

int number(const char* text) {
    int value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        value = value * 10 + (*text - '0');
    }
    return value;
}

int run(int count, char** arguments) {
    if (count < 3) {
        printf("usage: foreign-host MODULE.dll SERVICE.dll|--refused [LIVES]\n");
        return 2;
    }
    if (strcmp(arguments[2], "--refused") == 0) {
        const Libraries libraries(arguments[1], nullptr);
        CHECK(libraries.createPlugin("com.norvane.vantor.presentation") == nullptr);
        CHECK(libraries.createRecord("c_com.norvane.vantor.presentation") == nullptr);
        CHECK(FreeLibrary(libraries.module));
        printf("refused, as it should be\n");
        return 0;
    }
    const Libraries libraries(arguments[1], arguments[2]);
    for (const Check& check : checks) {
        check.run(libraries);
        printf("passed: %s\n", check.name);
    }
    CHECK(FreeLibrary(libraries.module));
    if (count > 3) {
        checkManyLives(arguments[1], arguments[2], number(arguments[3]));
        checkUnloading(arguments[1], arguments[2], number(arguments[3]) / 4);
    }
    return 0;
}

} // namespace
} // namespace foreign

extern "C" void mainCRTStartup() {
    int count = 0;
    char** arguments = nullptr;
    char** environment = nullptr;
    int mode = 0;
    __getmainargs(&count, &arguments, &environment, 0, &mode);
    exit(foreign::run(count, arguments));
}
