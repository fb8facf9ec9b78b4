#include "host/strict/CallWatch.h"

#include <algorithm>
#include <utility>

namespace host {

std::uint64_t CallDeadlines::begin(std::string name, Time now) {
    calls.emplace(++last, Call{std::move(name), now + limit});
    return last;
}

void CallDeadlines::end(std::uint64_t call) { calls.erase(call); }

void CallDeadlines::restart(Time now) {
    for (auto& [number, call] : calls) {
        call.deadline = now + limit;
    }
}

std::optional<CallDeadlines::Time> CallDeadlines::next() const {
    std::optional<Time> first;
    for (const auto& [number, call] : calls) {
        if (!call.isTold) {
            first = first ? std::min(*first, call.deadline) : call.deadline;
        }
    }
    return first;
}

std::vector<std::string> CallDeadlines::takeOverdue(Time now) {
    std::vector<std::string> names;
    for (auto& [number, call] : calls) {
        if (!call.isTold && call.deadline <= now) {
            call.isTold = true;
            names.push_back(call.name);
        }
    }
    return names;
}

CallWatch::CallWatch(std::chrono::milliseconds limit, std::function<void(const std::string&)> onOverdue)
    : report(std::move(onOverdue))
    , deadlines(limit)
    , thread([this] { run(); }) {}

CallWatch::~CallWatch() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_all();
    thread.join();
}

std::uint64_t CallWatch::begin(std::string name) {
    const std::lock_guard lock(mutex);
    const std::uint64_t call = deadlines.begin(std::move(name), std::chrono::steady_clock::now());
    changed.notify_all();
    return call;
}

void CallWatch::end(std::uint64_t call) {
    const std::lock_guard lock(mutex);
    deadlines.end(call);
}

void CallWatch::restart() {
    const std::lock_guard lock(mutex);
    deadlines.restart(std::chrono::steady_clock::now());
}

void CallWatch::run() {
    std::unique_lock lock(mutex);
    while (!isEnding) {
        const std::vector<std::string> overdue = deadlines.takeOverdue(std::chrono::steady_clock::now());
        if (!overdue.empty()) {
            lock.unlock();
            std::for_each(overdue.begin(), overdue.end(), report);
            lock.lock();
        } else if (const auto next = deadlines.next()) {
            changed.wait_until(lock, *next);
        } else {
            changed.wait(lock);
        }
    }
}

} // namespace host
