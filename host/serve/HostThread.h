/// The thread on which the host calls the plugin.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace host::serve {

/// Does one task after the other, in the order in which they were posted. Any thread may post.
class HostThread {
public:
    using Task = std::function<void()>;

    HostThread();
    HostThread(const HostThread&) = delete;
    HostThread& operator=(const HostThread&) = delete;
    /// Does what was posted and ends.
    ~HostThread();

    void post(Task task);
    /// Posts a task and waits for its end. Not on this thread.
    void run(const Task& task);
    /// Takes back the tasks that have not begun.
    std::deque<Task> takeWaiting();

private:
    void work();

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> waiting;
    bool isEnding = false;
    std::thread thread; ///< last: it uses the others
};

} // namespace host::serve
