#include "common2/util/UnameVersion.h"

#include <charconv>

namespace common2 {
namespace {

MYOSVER_OS::Type typeOf(std::string_view machine) {
    if (machine == "x86_64") {
        return MYOSVER_OS::LinuxX86_64;
    }
    return machine == "aarch64" || machine == "arm64" ? MYOSVER_OS::LinuxArm64 : MYOSVER_OS::Unknown;
}

/// Takes a number off the text's front, if there is one that fits.
bool takeNumber(std::string_view& text, int& number) {
    if (text.empty() || text.front() == '-') {
        return false;
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool isWordCharacter(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

} // namespace

OsVersion_t linuxVersion(std::string_view release, std::string_view machine) {
    OsVersion_t version;
    version.type = typeOf(machine);
    version.family = "Linux";
    for (int* number : {&version.major, &version.minor, &version.build}) {
        if (!takeNumber(release, *number)) {
            break;
        }
        if (number != &version.build && release.starts_with('.')) {
            release.remove_prefix(1);
        } else {
            break;
        }
    }
    if (!release.empty() && !isWordCharacter(release.front())) {
        release.remove_prefix(1);
    }
    version.further = release;
    return version;
}

} // namespace common2
