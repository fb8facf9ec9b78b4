#include "common2/util/OsVerApi.h"

#include "common2/logging/Common2Loggers.h"

#include <array>
#include <cstddef>
#include <utility>

namespace {

constexpr std::array<const char*, 14> typeNames{
    "unknown",     "win",     "win-arm64", "win-uwp",        "mac-intel", "mac-arm",     "linux-x86_64",
    "linux-arm64", "solaris", "apple-ios", "google-android", "chromeos",  "vpn-android", "knox-android",
};
static_assert(typeNames.size() == MYOSVER_OS::KnoxAndroid + 1 && typeNames.back());

} // namespace

const char* MYOSVER_OS::ToString(int type) {
    const auto index = static_cast<std::size_t>(type);
    if (index < typeNames.size()) {
        return typeNames[index];
    }
    COMMON2_LOG(DBG_WARN, "MYOSVER_OS::ToString") << "Unknown OS type: " << type;
    return typeNames[Unknown];
}

OsVerApi::OsVerApi(OsVersion_t told)
    : version(std::move(told)) {}

std::string OsVerApi::GetVersionText() const {
    std::string text = std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' +
                       std::to_string(version.build);
    if (!version.further.empty()) {
        text += ' ' + version.further;
    }
    return text;
}
