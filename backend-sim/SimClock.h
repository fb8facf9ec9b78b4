/// The time by which the service lives.
#pragma once

#include <chrono>
#include <cstdint>

namespace sim {

/// The real time, or one that stands still until somebody moves it on. Time never goes back, but for the wall
/// clock where it is set. One thread at a time.
class SimClock {
public:
    using Milliseconds = std::chrono::milliseconds;
    using Instant = std::chrono::time_point<std::chrono::steady_clock, Milliseconds>;

    Instant now() const;
    /// The wall clock: whole seconds since 1970.
    std::int64_t unixSeconds() const;

    /// Stops time, the wall clock at `seconds` since 1970.
    void hold(std::int64_t seconds);
    /// Lets time that is held go on by that much; it gets there by `reach`.
    void advance(Milliseconds duration) { goal += duration; }
    /// Lets time go on by itself from where it stands; the wall clock shows the real time again.
    void release();

    bool isHeld() const noexcept { return held; }
    /// How far time may go at present: the goal where it is held, else now.
    Instant horizon() const { return held ? goal : now(); }
    /// Moves time that is held on to `instant`, which must not lie behind the horizon.
    void reach(Instant instant);

private:
    static Instant realNow();

    bool held = false;
    Milliseconds lead{0}; ///< of this time before the real one
    Instant reached;      ///< where held time stands, and
    Instant goal;         ///< where it is going
    Instant heldSince;
    std::int64_t secondsWhenHeld = 0;
};

} // namespace sim
