/// The one thread on which the library calls its receivers and its service lives.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace sim {

/// Runs tasks one after the other: those that are due, in the order of their times, and among equal times in
/// the order in which they were posted. No lock is held while a task runs. The thread begins with the first
/// task. Any thread may post, a task included.
class DeliveryThread {
public:
    using Task = std::function<void()>;

    DeliveryThread() = default;
    DeliveryThread(const DeliveryThread&) = delete;
    DeliveryThread& operator=(const DeliveryThread&) = delete;
    /// Waits for the task that runs and drops those that wait.
    ~DeliveryThread();

    /// @throws std::system_error where no thread can be had
    void post(Task task, std::chrono::milliseconds delay = {});

    /// Whether the caller runs on this thread.
    bool isCurrent() const;

private:
    using Clock = std::chrono::steady_clock;

    struct Entry {
        Clock::time_point due;
        std::uint64_t sequence;
        Task task;
    };
    static bool isLater(const Entry& left, const Entry& right);
    void run();
    Task takeNext();

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::vector<Entry> waiting; ///< a heap, the next one on top
    std::uint64_t posted = 0;
    bool ending = false;
    std::thread thread;
};

} // namespace sim
