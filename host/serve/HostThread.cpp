#include "host/serve/HostThread.h"

#include <future>
#include <memory>
#include <utility>

namespace host::serve {

HostThread::HostThread()
    : thread([this] { work(); }) {}

HostThread::~HostThread() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_one();
    thread.join();
}

void HostThread::post(Task task) {
    {
        const std::lock_guard lock(mutex);
        waiting.push_back(std::move(task));
    }
    changed.notify_one();
}

void HostThread::run(const Task& task) {
    const auto packaged = std::make_shared<std::packaged_task<void()>>(task);
    std::future<void> end = packaged->get_future();
    post([packaged] { (*packaged)(); });
    end.get();
}

std::deque<HostThread::Task> HostThread::takeWaiting() {
    const std::lock_guard lock(mutex);
    return std::exchange(waiting, {});
}

void HostThread::work() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
        if (waiting.empty()) {
            return;
        }
        Task task = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        task();
        task = nullptr; // what it held goes before the next one comes
        lock.lock();
    }
}

} // namespace host::serve
