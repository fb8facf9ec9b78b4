/// Finds calls that do not come back.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace host {

/// The calls that run, and until when they should be back. Knows the time only as it is told. Not for several
/// threads at once.
class CallDeadlines {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit CallDeadlines(std::chrono::milliseconds usedLimit)
        : limit(usedLimit) {}

    /// @return the call's number
    std::uint64_t begin(std::string name, Time now);
    void end(std::uint64_t call);
    /// Every call that runs gets its whole time anew.
    void restart(Time now);

    /// When the next call will be overdue; nothing while none can be.
    std::optional<Time> next() const;
    /// The names of the calls that are overdue, each call once.
    std::vector<std::string> takeOverdue(Time now);

private:
    struct Call {
        std::string name;
        Time deadline;
        bool isTold = false;
    };

    std::chrono::milliseconds limit;
    std::uint64_t last = 0;
    std::map<std::uint64_t, Call> calls;
};

/// Watches calls with a thread of its own. Any thread.
class CallWatch {
public:
    /// @param onOverdue gets the name of each call that is not back in time, once, on the watch's thread. It
    ///     must not wait for the call.
    CallWatch(std::chrono::milliseconds limit, std::function<void(const std::string& name)> onOverdue);
    CallWatch(const CallWatch&) = delete;
    CallWatch& operator=(const CallWatch&) = delete;
    ~CallWatch();

    std::uint64_t begin(std::string name);
    void end(std::uint64_t call);
    /// The host itself took time inside a callback: every call gets its whole time anew.
    void restart();

    /// A call, for as long as this lives.
    class Call {
    public:
        Call(CallWatch& usedWatch, std::string name)
            : watch(usedWatch)
            , number(watch.begin(std::move(name))) {}
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call() { watch.end(number); }

    private:
        CallWatch& watch;
        std::uint64_t number;
    };

private:
    void run();

    const std::function<void(const std::string&)> report;
    std::mutex mutex;
    std::condition_variable changed;
    CallDeadlines deadlines;
    bool isEnding = false;
    std::thread thread; ///< last: it uses the others
};

} // namespace host
