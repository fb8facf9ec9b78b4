/// The user's wish that the program ends.
#pragma once

#include <memory>

namespace host {

/// Waits for an interruption instead of being ended by it. Made before other threads are. One
/// at a time.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    /// Returns when the user interrupts the program or the system asks it to end. A second such wish ends the
    /// program as usual.
    void wait();

    /// Waits for standard input as well.
    /// @return true when there is something to read, or its end; false when the user interrupts
    bool waitForInput();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace host
