#include "common2/filesystem/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace common2 {
namespace {

std::error_code lastFileError() { return {errno, std::generic_category()}; }

} // namespace

RegularFile::RegularFile(const std::filesystem::path& path, std::error_code& error)
    : handle(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    error.clear();
    struct stat status {};
    if (handle < 0 || ::fstat(static_cast<int>(handle), &status) != 0) {
        error = lastFileError();
    } else if (!S_ISREG(status.st_mode)) {
        error = std::make_error_code(std::errc::invalid_argument);
    }
}

RegularFile::~RegularFile() {
    if (handle >= 0) {
        ::close(static_cast<int>(handle));
    }
}

std::size_t RegularFile::readSome(char* bytes, std::size_t size, std::error_code& error) {
    ssize_t count = 0;
    do {
        count = ::read(static_cast<int>(handle), bytes, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        error = lastFileError();
        return 0;
    }
    return static_cast<std::size_t>(count);
}

} // namespace common2
