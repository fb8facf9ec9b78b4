#include "common2/windows/os/RegistryKey.h"

#include "common2/filesystem/RegularFile.h"
#include "common2/util/WideText.h"
#include "common2/windows/os/KnownFolder.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>

struct RegistryKey::Handle {
    std::filesystem::path folder;
};

namespace {

/// Far more than any setting needs, in bytes.
constexpr std::size_t largestValue = 64 * 1024;

constexpr std::string_view commonRoot = "software/";

bool beginsWithCommonRoot(std::string_view path) {
    return path.size() >= commonRoot.size() &&
           std::ranges::equal(path.substr(0, commonRoot.size()), commonRoot, [](char one, char other) {
               return (one >= 'A' && one <= 'Z' ? one - 'A' + 'a' : one) == other;
           });
}

std::filesystem::path folderOf(const wchar_t* path) {
    std::string name = common2::toUtf8(path);
    std::ranges::replace(name, '\\', '/');
    if (beginsWithCommonRoot(name)) {
        name.erase(0, commonRoot.size());
    }
    return KnownFolder::GetPath(KnownFolder::ProgramData) / name;
}

} // namespace

RegistryKey::RegistryKey() = default;
RegistryKey::~RegistryKey() = default;

std::uint32_t RegistryKey::Open(const wchar_t* path, std::uint32_t) {
    handle.reset();
    std::filesystem::path folder = folderOf(path);
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) {
        return static_cast<std::uint32_t>(error ? error.value() : ENOENT);
    }
    handle = std::make_unique<Handle>(Handle{std::move(folder)});
    return 0;
}

std::uint32_t RegistryKey::QueryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const {
    bytes.clear();
    if (!handle) {
        return EBADF;
    }
    std::error_code error;
    common2::RegularFile file(handle->folder / common2::toUtf8(name), error);
    if (!error) {
        const std::string content = file.read(largestValue, error);
        bytes.assign(content.begin(), content.end());
    }
    return static_cast<std::uint32_t>(error.value());
}

/// A file has no type.
std::uint32_t RegistryKey::QueryBinaryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const {
    return QueryValue(name, bytes);
}

std::uint32_t RegistryKey::QueryStringValue(const wchar_t* name, std::string& text) const {
    std::vector<unsigned char> bytes;
    const std::uint32_t error = QueryValue(name, bytes);
    text.assign(bytes.begin(), bytes.end());
    // Whoever writes the file with an editor or `echo` leaves the end of a line.
    text.erase(text.find_last_not_of("\r\n") + 1);
    return error;
}
