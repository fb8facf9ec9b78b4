/// What came of one step of a check.
#pragma once

#include "host/LogLine.h"
#include "host/Notice.h"
#include "host/validate/Expect.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace host::validate {

/// One thing that the module did.
struct Arrival {
    enum class Kind {
        Notice,   ///< `text` is its XML
        StopDone, ///< the host was told of a stop
        Request,  ///< `text` is the backend's operation and behind a blank its JSON, if it has one
        Log,      ///< `record` was logged
    };

    Kind kind = Kind::Notice;
    std::string text = {};
    LogRecord record = {};
    std::uintptr_t handle = 0; ///< of a notice or the end of a stop
    std::thread::id thread = std::this_thread::get_id();
};

/// The result of a call and what arrived during it, in order.
struct Step {
    std::int32_t result = 0;
    std::vector<Arrival> arrivals = {};

    /// The notices as `screenLine` tells them; one that cannot be read as "unreadable".
    Lines screens() const;
    /// The same without the copies for the host's log.
    Lines shown() const;
    /// The same without the statistics that go out with every status either.
    Lines changed() const;
    /// The notices, without those that cannot be read.
    std::vector<NoticeElement> notices() const;
    /// The first notice whose line begins so.
    /// @throws CheckFailure where there is none
    NoticeElement notice(std::string_view line) const;
    /// What reached the backend.
    Lines requests() const;
    /// Log lines of a severity at least as high, as "severity function: message".
    Lines logged(int severity) const;
    /// "notice", "stop done", "request Stop": everything but the log, in order.
    Lines order() const;
    std::size_t stopsDone() const;
};

} // namespace host::validate
