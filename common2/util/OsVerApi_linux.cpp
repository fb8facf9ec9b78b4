#include "common2/util/OsVerApi.h"

#include "common2/util/UnameVersion.h"

#include <sys/utsname.h>

OsVerApi::OsVerApi() {
    utsname names{};
    if (::uname(&names) == 0) {
        version = common2::linuxVersion(names.release, names.machine);
    }
}
