#include "host/bundle/PrivateFile.h"

#include "host/HostError.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace host::bundle {
namespace {

HostError cannotWrite(const std::filesystem::path& file, int error) {
    return HostError("cannot write " + file.string() + ": " + std::generic_category().message(error));
}

/// A file beside the one that is to be written. It goes with the object, unless it got its name.
class Draft {
public:
    explicit Draft(const std::filesystem::path& file)
        : target(file)
        , name(target.string() + ".XXXXXX")
        , descriptor(::mkstemp(name.data())) { // for its owner only
        if (descriptor < 0) {
            throw cannotWrite(target, errno);
        }
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    ~Draft() {
        ::close(descriptor);
        if (!isNamed) {
            ::unlink(name.c_str());
        }
    }

    void write(std::string_view content) const {
        while (!content.empty()) {
            const ssize_t count = ::write(descriptor, content.data(), content.size());
            if (count < 0 && errno != EINTR) {
                throw cannotWrite(target, errno);
            }
            content.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        if (::fsync(descriptor) != 0) {
            throw cannotWrite(target, errno);
        }
    }

    void takeName(bool replaces) {
        if (!rename(replaces)) {
            throw errno == EEXIST ? HostError("there is a file " + target.string() + " already")
                                  : cannotWrite(target, errno);
        }
        isNamed = true;
    }

private:
    bool rename(bool replaces) {
        if (replaces) {
            return ::rename(name.c_str(), target.c_str()) == 0;
        }
        if (::renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
            return true;
        }
        // Where the file system cannot do that in one step, a second name does: the first one goes with the
        // draft.
        return (errno == EINVAL || errno == ENOSYS) && ::link(name.c_str(), target.c_str()) == 0 &&
               ::unlink(name.c_str()) == 0;
    }

    const std::filesystem::path target;
    std::string name;
    const int descriptor;
    bool isNamed = false;
};

} // namespace

void writePrivateFile(const std::filesystem::path& file, std::string_view content, bool replaces) {
    Draft draft(file);
    draft.write(content);
    draft.takeName(replaces);
}

} // namespace host::bundle
