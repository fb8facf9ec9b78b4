#include "host/LogTap.h"

#include "host/SystemLog.h"

#include <mutex>
#include <utility>

namespace host {
namespace {

/// Neither is ever destroyed: a module logs until it is unloaded, which may be at the program's very end.
std::mutex& tapMutex() {
    static auto* mutex = new std::mutex;
    return *mutex;
}
std::shared_ptr<LogTap::Handler>& currentHandler() {
    static auto* handler = new std::shared_ptr<LogTap::Handler>;
    return *handler;
}

} // namespace

LogTap::LogTap(Handler handler) {
    auto shared = std::make_shared<Handler>(std::move(handler));
    const std::lock_guard lock(tapMutex());
    standInForSystemLog();
    currentHandler() = std::move(shared);
}

LogTap::~LogTap() {
    std::shared_ptr<Handler> gone;
    const std::lock_guard lock(tapMutex());
    gone = std::exchange(currentHandler(), nullptr);
}

void takeLogLine(const std::string& line) {
    std::shared_ptr<LogTap::Handler> handler;
    {
        const std::lock_guard lock(tapMutex());
        handler = currentHandler();
    }
    if (handler) {
        (*handler)(parseLogLine(line));
    }
}

} // namespace host
