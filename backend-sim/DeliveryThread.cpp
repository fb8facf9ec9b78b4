#include "backend-sim/DeliveryThread.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace sim {

DeliveryThread::~DeliveryThread() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    changed.notify_one();
    if (thread.joinable()) {
        thread.join();
    }
}

void DeliveryThread::post(Task task, std::chrono::milliseconds delay) {
    const std::lock_guard lock(mutex);
    if (ending) {
        return;
    }
    if (!thread.joinable()) {
        thread = std::thread([this] { run(); });
    }
    waiting.push_back({Clock::now() + delay, posted++, std::move(task)});
    std::push_heap(waiting.begin(), waiting.end(), isLater);
    changed.notify_one();
}

bool DeliveryThread::isCurrent() const {
    const std::lock_guard lock(mutex);
    return thread.get_id() == std::this_thread::get_id();
}

bool DeliveryThread::isLater(const Entry& left, const Entry& right) {
    return std::tie(left.due, left.sequence) > std::tie(right.due, right.sequence);
}

void DeliveryThread::run() {
    while (const Task task = takeNext()) {
        task();
    }
}

DeliveryThread::Task DeliveryThread::takeNext() {
    std::unique_lock lock(mutex);
    while (!ending) {
        if (waiting.empty()) {
            changed.wait(lock);
        } else if (const auto due = waiting.front().due; due > Clock::now()) {
            changed.wait_until(lock, due);
        } else {
            std::pop_heap(waiting.begin(), waiting.end(), isLater);
            Task task = std::move(waiting.back().task);
            waiting.pop_back();
            return task;
        }
    }
    return {};
}

} // namespace sim
