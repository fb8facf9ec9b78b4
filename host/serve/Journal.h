/// All that happened, in order.
#pragma once

#include <boost/json/object.hpp>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace host::serve {

/// A line of a session, and when and where it happened.
struct JournalEntry {
    std::uint64_t sequence = 0; ///< 1, 2, ...
    std::int64_t time = 0;      ///< milliseconds since 1970
    unsigned thread = 0;        ///< numbered in the order of their appearance, from 1
    std::uint64_t input = 0;    ///< of an output: the sequence of the input that caused it; 0: none did
    boost::json::object line;   ///< an input holds "do", an output "out" and no "n"

    bool isInput() const { return line.contains("do"); }
};
using JournalEntryPointer = std::shared_ptr<const JournalEntry>;

/// Entries that follow each other, and how many before them are kept no more.
struct JournalSlice {
    std::uint64_t missed = 0;
    std::vector<JournalEntryPointer> entries;
};

/// Keeps the last entries, and hands every entry once to who follows it. An output belongs to the input that
/// runs on its thread. Any thread; nobody waits here for more than another's append.
class Journal {
public:
    /// The least of both decides how much is kept.
    struct Limits {
        std::size_t entries = 20'000;
        std::size_t bytes = std::size_t{64} << 20; ///< roughly
    };

    explicit Journal(const Limits& usedLimits)
        : limits(usedLimits) {}

    /// An input begins on this thread. What this thread puts out belongs to it, until it ends.
    void beginInput(boost::json::object line);
    void endInput();
    /// What came of the input that runs on this thread.
    void output(boost::json::object line);
    /// What came of an input that may be over. @param input its sequence
    void outputOf(std::uint64_t input, boost::json::object line);

    /// `signal` is called whenever there is something to take, on the appending thread, which may hold locks
    /// of the plugin; it must not wait. It must be set while nobody appends.
    void setSignal(std::function<void()> called) { signal = std::move(called); }
    /// The entries since the last call. What is not taken is kept whatever the limits are, so this has to be
    /// called soon after each signal. For one caller.
    std::vector<JournalEntryPointer> takeNew();

    /// At most `most` entries behind that sequence, and no more than make up `mostBytes`, roughly, save that
    /// one is always among them if there is one.
    JournalSlice after(std::uint64_t sequence, std::size_t most,
                       std::size_t mostBytes = std::numeric_limits<std::size_t>::max()) const;
    /// Sequence of the latest entry; 0: there is none.
    std::uint64_t latest() const;

private:
    struct ThreadState {
        unsigned number = 0;
        std::uint64_t input = 0;
    };

    std::uint64_t append(boost::json::object line, const std::uint64_t* input);
    ThreadState& currentThread();
    void dropOldest();

    const Limits limits;
    std::function<void()> signal = [] {};
    mutable std::mutex mutex;
    std::map<std::thread::id, ThreadState> threads;
    std::uint64_t last = 0;
    std::size_t bytes = 0; ///< of the entries that are kept
    std::deque<JournalEntryPointer> kept;
    std::vector<JournalEntryPointer> fresh; ///< not yet taken
};

/// The input that begins with this object's life and ends with it.
class JournaledInput {
public:
    JournaledInput(Journal& usedJournal, boost::json::object line)
        : journal(usedJournal) {
        journal.beginInput(std::move(line));
    }
    JournaledInput(const JournaledInput&) = delete;
    JournaledInput& operator=(const JournaledInput&) = delete;
    ~JournaledInput() { journal.endInput(); }

private:
    Journal& journal;
};

} // namespace host::serve
