#include "tests/support/Holdings.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <malloc.h>
#include <pthread.h>
#include <string>
#include <vector>

namespace test {

namespace {

using std::filesystem::directory_iterator;

constexpr unsigned long exiting = 0x4; ///< the kernel's PF_EXITING

/// A joined thread is listed until the kernel has cleared it away, which may be a moment after its join.
bool isRunning(const std::filesystem::path& task) {
    std::ifstream file(task / "stat");
    std::string skipped;
    unsigned long flags = exiting;
    // Number, (name), state, parent, group, session, terminal, its group, flags.
    file.ignore(std::numeric_limits<std::streamsize>::max(), ')');
    file >> skipped >> skipped >> skipped >> skipped >> skipped >> skipped >> flags;
    return file && (flags & exiting) == 0;
}

std::size_t mappedRegions() {
    std::ifstream maps("/proc/self/maps");
    return static_cast<std::size_t>(
        std::count(std::istreambuf_iterator<char>(maps), std::istreambuf_iterator<char>(), '\n'));
}

/// By taking all that are left.
std::size_t takenSlots() {
    std::vector<pthread_key_t> keys;
    for (pthread_key_t key = 0; ::pthread_key_create(&key, nullptr) == 0;) {
        keys.push_back(key);
    }
    for (const pthread_key_t key : keys) {
        ::pthread_key_delete(key);
    }
    return PTHREAD_KEYS_MAX - keys.size();
}

} // namespace

std::size_t runningThreads() {
    const directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(
        std::count_if(begin(tasks), end(tasks), [](const auto& task) { return isRunning(task.path()); }));
}

Holdings holdings() {
    const directory_iterator files("/proc/self/fd");
    const auto fileCount = static_cast<std::size_t>(std::distance(begin(files), end(files)));
    return {::mallinfo2().uordblks, fileCount, runningThreads(), mappedRegions(), takenSlots()};
}

} // namespace test
