/// The user's wish that the program ends.
#pragma once

#include <csignal>

namespace host {

/// Waits for an interruption instead of being ended by it. Made before other threads are, which inherit the
/// signals' mask.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    /// Returns when the user interrupts the program or the system asks it to end. A second such wish ends the
    /// program as usual.
    void wait();

private:
    void restore();

    sigset_t awaited;
    sigset_t before;
    bool isBlocked = true;
};

} // namespace host
