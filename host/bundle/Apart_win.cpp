#include "host/bundle/Apart.h"

#include <mutex>

namespace host::bundle {

ApartOutcome runApart(const Work& work, std::chrono::milliseconds) {
    std::mutex mutex;
    ApartOutcome outcome;
    work([&](std::string_view line) {
        const std::lock_guard lock(mutex);
        outcome.lines.append(line).append("\n");
    });
    return outcome;
}

} // namespace host::bundle
