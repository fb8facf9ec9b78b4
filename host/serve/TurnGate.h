/// One thing at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>

namespace host::serve {

/// Lets the host's calls and the service's documents into the plugin one at a time, in the order in which
/// they come, so that what happens can be told, and repeated, as one row of inputs.
///
/// A call that stops the plugin may wait, inside, until the thread of the documents has come to rest. A
/// document must not wait for such a call: while one has its turn, documents are turned away.
class TurnGate {
public:
    /// Waits for the caller's turn.
    void enter() { enter(false); }
    /// The same for a call that stops the plugin. Documents that wait, or come before it leaves, are turned
    /// away.
    void enterToStop() { enter(true); }
    /// Waits for a document's turn.
    /// @return false: it is turned away and has no turn to leave
    bool enterWithDocument();
    /// Ends the turn. On any thread.
    void leave();

private:
    void enter(bool stops);

    std::mutex mutex;
    std::condition_variable moved;
    std::uint64_t latest = 0;
    std::deque<std::uint64_t> line; ///< who has the turn, and who waits for it
    bool isStopping = false;        ///< who has the turn stops the plugin
};

/// A turn of the host's, for as long as it lives.
class Turn {
public:
    enum class Kind { Plain, Stopping };

    Turn(TurnGate& entered, Kind kind)
        : gate(entered) {
        kind == Kind::Stopping ? gate.enterToStop() : gate.enter();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { gate.leave(); }

private:
    TurnGate& gate;
};

} // namespace host::serve
