#include "host/serve/Journal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace host::serve {
namespace {

namespace json = boost::json;

std::int64_t now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

/// About what the entry takes of memory.
std::size_t costOf(const JournalEntry& entry) {
    constexpr std::size_t atLeast = 512;
    std::size_t cost = atLeast;
    for (const auto& field : entry.line) {
        cost += field.value().is_string() ? field.value().get_string().size() : 0;
    }
    return cost;
}

} // namespace

void Journal::beginInput(json::object line) {
    constexpr std::uint64_t none = 0;
    const std::uint64_t sequence = append(std::move(line), &none);
    const std::lock_guard lock(mutex);
    currentThread().input = sequence;
}

void Journal::endInput() {
    const std::lock_guard lock(mutex);
    currentThread().input = 0;
}

void Journal::output(json::object line) { append(std::move(line), nullptr); }

void Journal::outputOf(std::uint64_t input, json::object line) { append(std::move(line), &input); }

std::uint64_t Journal::append(json::object line, const std::uint64_t* input) {
    auto entry = std::make_shared<JournalEntry>();
    entry->time = now();
    entry->line = std::move(line);
    std::uint64_t sequence = 0;
    {
        const std::lock_guard lock(mutex);
        const ThreadState& thread = currentThread();
        sequence = ++last;
        entry->sequence = sequence;
        entry->thread = thread.number;
        entry->input = input != nullptr ? *input : thread.input;
        bytes += costOf(*entry);
        kept.push_back(entry);
        fresh.push_back(std::move(entry));
        dropOldest();
    }
    signal();
    return sequence;
}

Journal::ThreadState& Journal::currentThread() {
    ThreadState& thread = threads[std::this_thread::get_id()];
    if (thread.number == 0) {
        thread.number = static_cast<unsigned>(threads.size());
    }
    return thread;
}

void Journal::dropOldest() {
    while (kept.size() > 1 && (kept.size() > limits.entries || bytes > limits.bytes)) {
        bytes -= costOf(*kept.front());
        kept.pop_front();
    }
}

std::vector<JournalEntryPointer> Journal::takeNew() {
    const std::lock_guard lock(mutex);
    return std::exchange(fresh, {});
}

JournalSlice Journal::after(std::uint64_t sequence, std::size_t most, std::size_t mostBytes) const {
    const std::lock_guard lock(mutex);
    JournalSlice slice;
    if (kept.empty() || sequence >= last) {
        return slice;
    }
    const std::uint64_t first = kept.front()->sequence;
    const std::uint64_t begin = std::max(sequence + 1, first);
    slice.missed = begin - (sequence + 1);
    std::size_t cost = 0;
    for (auto entry = kept.begin() + static_cast<std::ptrdiff_t>(begin - first);
         entry != kept.end() && slice.entries.size() < most; ++entry) {
        cost += costOf(**entry);
        if (cost > mostBytes && !slice.entries.empty()) {
            break;
        }
        slice.entries.push_back(*entry);
    }
    return slice;
}

std::uint64_t Journal::latest() const {
    const std::lock_guard lock(mutex);
    return last;
}

} // namespace host::serve
