#include "backend-sim/SimClock.h"

#include <algorithm>

namespace sim {

using std::chrono::duration_cast;
using std::chrono::floor;
using std::chrono::seconds;

SimClock::Instant SimClock::now() const { return held ? reached : realNow() + lead; }

std::int64_t SimClock::unixSeconds() const {
    return held ? secondsWhenHeld + floor<seconds>(reached - heldSince).count()
                : duration_cast<seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void SimClock::hold(std::int64_t secondsShown) {
    reached = now();
    goal = held ? std::max(goal, reached) : reached;
    heldSince = goal;
    secondsWhenHeld = secondsShown;
    held = true;
}

void SimClock::release() {
    if (held) {
        lead = goal - realNow();
        held = false;
    }
}

void SimClock::reach(Instant instant) {
    if (held) {
        reached = std::max(reached, instant);
    }
}

SimClock::Instant SimClock::realNow() { return floor<Milliseconds>(std::chrono::steady_clock::now()); }

} // namespace sim
