#include "backend-sim/DeliveryThread.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace sim {

DeliveryThread::Owner DeliveryThread::newOwner() { return std::make_shared<const char>(); }

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

void DeliveryThread::post(Task task, Milliseconds delay) {
    add({.isAwaited = true, .owner = std::nullopt, .task = std::move(task)}, delay);
}

void DeliveryThread::postFor(const Owner& owner, Task task, Milliseconds delay) {
    add({.isAwaited = true, .owner = owner, .task = std::move(task)}, delay);
}

void DeliveryThread::postTimer(const Owner& owner, Task task, Milliseconds delay) {
    add({.isAwaited = false, .owner = owner, .task = std::move(task)}, delay);
}

void DeliveryThread::add(Entry entry, Milliseconds delay) {
    const std::lock_guard lock(mutex);
    if (ending) {
        return;
    }
    if (!thread.joinable()) {
        thread = std::thread([this] { run(); });
    }
    if (entry.owner) {
        dropGone();
    }
    entry.due = clock.now() + delay;
    entry.number = ++posted;
    waiting.push_back(std::move(entry));
    std::push_heap(waiting.begin(), waiting.end(), isLater);
    changed.notify_one();
}

bool DeliveryThread::isCurrent() const {
    const std::lock_guard lock(mutex);
    return thread.get_id() == std::this_thread::get_id();
}

void DeliveryThread::waitUntilIdle() {
    std::unique_lock lock(mutex);
    rested.wait(lock, [this] { return isIdle(); });
}

void DeliveryThread::waitForRunningTask() {
    std::unique_lock lock(mutex);
    rested.wait(lock, [this, seen = running] { return running == 0 || running != seen; });
}

std::int64_t DeliveryThread::unixSeconds() const {
    const std::lock_guard lock(mutex);
    return clock.unixSeconds();
}

void DeliveryThread::holdTime(std::int64_t seconds) {
    const std::lock_guard lock(mutex);
    clock.hold(seconds);
    changed.notify_one();
    rested.notify_all();
}

void DeliveryThread::advanceTime(Milliseconds duration) {
    const std::lock_guard lock(mutex);
    if (clock.isHeld()) {
        clock.advance(duration);
        letTimeRest();
        changed.notify_one();
    }
}

void DeliveryThread::releaseTime() {
    const std::lock_guard lock(mutex);
    clock.release();
    changed.notify_one();
}

bool DeliveryThread::isLater(const Entry& left, const Entry& right) {
    return std::tie(left.due, left.number) > std::tie(right.due, right.number);
}

void DeliveryThread::run() {
    while (Task task = takeNext()) {
        task();
        task = nullptr; // what it held goes before it counts as ended
        const std::lock_guard lock(mutex);
        running = 0;
        letTimeRest();
        rested.notify_all();
    }
}

DeliveryThread::Task DeliveryThread::takeNext() {
    std::unique_lock lock(mutex);
    while (!ending) {
        if (!isNextDue()) {
            letTimeRest();
            rested.notify_all();
            waitForChange(lock);
        } else if (Entry next = popNext(); !next.isGone()) {
            clock.reach(next.due);
            running = next.number;
            return std::move(next.task);
        }
    }
    return {};
}

DeliveryThread::Entry DeliveryThread::popNext() {
    std::pop_heap(waiting.begin(), waiting.end(), isLater);
    Entry next = std::move(waiting.back());
    waiting.pop_back();
    return next;
}

void DeliveryThread::dropGone() {
    std::erase_if(waiting, [](const Entry& entry) { return entry.isGone(); });
    std::make_heap(waiting.begin(), waiting.end(), isLater);
}

void DeliveryThread::letTimeRest() {
    if (running == 0 && std::none_of(waiting.begin(), waiting.end(), [this](const Entry& entry) {
            return !entry.isGone() && entry.due <= clock.horizon();
        })) {
        clock.reach(clock.horizon());
    }
}

bool DeliveryThread::isNextDue() const { return !waiting.empty() && waiting.front().due <= clock.horizon(); }

void DeliveryThread::waitForChange(std::unique_lock<std::mutex>& lock) {
    // Longer waits than this would leave the range of the system's clocks.
    constexpr Milliseconds longest = std::chrono::hours(1);
    if (waiting.empty() || clock.isHeld()) {
        changed.wait(lock);
    } else {
        changed.wait_for(lock, std::min(longest, waiting.front().due - clock.now()));
    }
}

bool DeliveryThread::isIdle() const {
    const bool onlyWhatIsDue = clock.isHeld();
    return running == 0 && std::none_of(waiting.begin(), waiting.end(), [&](const Entry& entry) {
               return !entry.isGone() &&
                      (entry.due <= clock.horizon() || (entry.isAwaited && !onlyWhatIsDue));
           });
}

} // namespace sim
