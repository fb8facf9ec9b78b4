/// The one thread on which the library calls its receivers and its service lives.
#pragma once

#include "backend-sim/SimClock.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace sim {

/// Runs tasks one after the other: those that are due, in the order of their times, and among equal times in
/// the order in which they were posted. No lock is held while a task runs. The thread begins with the first
/// task. Any thread may post, a task included.
class DeliveryThread {
public:
    using Task = std::function<void()>;
    using Milliseconds = SimClock::Milliseconds;
    /// To whom a task belongs: one whose owner has gone is dropped, and nobody waits for it.
    using Owner = std::shared_ptr<const void>;
    static Owner newOwner();

    DeliveryThread() = default;
    DeliveryThread(const DeliveryThread&) = delete;
    DeliveryThread& operator=(const DeliveryThread&) = delete;
    /// Waits for the task that runs and drops those that wait.
    ~DeliveryThread();

    /// @throws std::system_error where no thread can be had
    void post(Task task, Milliseconds delay = {});
    /// @param owner held weakly, and to be let go on this thread
    void postFor(const Owner& owner, Task task, Milliseconds delay);
    /// Posts what nobody waits for: before its time it doesn't keep the thread from being idle.
    void postTimer(const Owner& owner, Task task, Milliseconds delay);

    /// Whether the caller runs on this thread.
    bool isCurrent() const;

    /// Waits until no task runs or waits to run. While time is held, tasks that lie ahead count for nothing.
    /// Not on this thread.
    void waitUntilIdle();
    /// Waits for the end of the task that runs, if there is one. Not on this thread.
    void waitForRunningTask();

    // The thread's time, as SimClock tells it.

    std::int64_t unixSeconds() const;
    void holdTime(std::int64_t seconds);
    /// Moves held time on, from one task that falls due to the next; returns at once. Real time is left
    /// alone.
    void advanceTime(Milliseconds duration);
    void releaseTime();

private:
    using Instant = SimClock::Instant;

    struct Entry {
        bool isAwaited;
        std::optional<std::weak_ptr<const void>> owner;
        Task task;
        Instant due{};
        std::uint64_t number = 0;

        bool isGone() const { return owner && owner->expired(); }
    };
    static bool isLater(const Entry& left, const Entry& right);
    void add(Entry entry, Milliseconds delay);
    void run();
    Task takeNext();
    Entry popNext();
    void dropGone();
    /// Moves held time to its goal where nothing is left to do on the way.
    void letTimeRest();
    bool isNextDue() const;
    void waitForChange(std::unique_lock<std::mutex>& lock);
    bool isIdle() const;

    mutable std::mutex mutex;
    std::condition_variable changed; ///< something for the thread to look at
    std::condition_variable rested;  ///< a task has ended
    std::vector<Entry> waiting;      ///< a heap, the next one on top
    std::uint64_t posted = 0;
    std::uint64_t running = 0; ///< number of the task that runs, 0 for none
    bool ending = false;
    SimClock clock;
    std::thread thread;
};

} // namespace sim
