#include "common2/windows/os/RegistryKey.h"

#include "common2/util/WideText.h"
#include "common2/windows/os/KnownFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

struct RegistryKey::Handle {
    std::filesystem::path folder;
};

namespace {

/// Far more than any setting needs, in bytes.
constexpr off_t largestValue = 64 * 1024;

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

/// An open file, closed at the end.
class File {
public:
    explicit File(const std::filesystem::path& path)
        : number(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (number >= 0) {
            ::close(number);
        }
    }

    std::uint32_t read(std::vector<unsigned char>& bytes) const {
        struct stat status {};
        if (number < 0 || ::fstat(number, &status) != 0) {
            return static_cast<std::uint32_t>(errno);
        }
        if (!S_ISREG(status.st_mode)) {
            return EINVAL;
        }
        if (status.st_size > largestValue) {
            return EFBIG;
        }
        bytes.resize(static_cast<std::size_t>(status.st_size));
        const ssize_t count = ::read(number, bytes.data(), bytes.size());
        if (count < 0) {
            return static_cast<std::uint32_t>(errno);
        }
        bytes.resize(static_cast<std::size_t>(count));
        return 0;
    }

private:
    int number;
};

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
    const std::uint32_t error = File(handle->folder / common2::toUtf8(name)).read(bytes);
    if (error) {
        bytes.clear();
    }
    return error;
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
