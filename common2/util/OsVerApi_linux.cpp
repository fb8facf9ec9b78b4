#include "common2/util/OsVerApi.h"

#include "common2/util/UnameVersion.h"

#include <string_view>
#include <sys/utsname.h>

OsVerApi::OsVerApi() {
    utsname names{};
    if (::uname(&names) == 0) {
        version = common2::linuxVersion(names.release, names.machine);
    }
}

bool OsVerApi::Is64BitSystem() {
    utsname names{};
    return ::uname(&names) == 0 && std::string_view(names.machine).ends_with("64");
}
