/// Catches what the module logs.
#pragma once

#include "host/LogLine.h"

#include <functional>
#include <memory>

namespace host {

/// While it lives, everything that this process hands to the system's log goes to `handler` and nowhere else.
/// The program has to export its symbols, so that a loaded module's calls end up here. One at a time.
class LogTap {
public:
    /// Called on the thread that logs, which may hold locks of the module: it must not call the module.
    using Handler = std::function<void(const LogRecord&)>;

    explicit LogTap(Handler handler);
    LogTap(const LogTap&) = delete;
    LogTap& operator=(const LogTap&) = delete;
    /// A call that is under way on another thread may still end after this.
    ~LogTap();
};

} // namespace host
