/// What a plugin should be, told without the plugin: three states and the calls between them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace test {

/// The host's calls of a plugin's life.
enum class Call { Create, Register, Start, Stop, Unregister, Dispose };
inline constexpr std::array<const char*, 6> callNames{"create", "register",   "start",
                                                      "stop",   "unregister", "dispose"};

class LifecycleModel {
public:
    /// @return what the plugin should answer; 0 for the calls that make and dispose of it
    std::int32_t take(Call call) {
        switch (call) {
        case Call::Register:
            return go(State::Made, State::Registered);
        case Call::Start:
            return go(State::Registered, State::Running);
        case Call::Stop:
            return go(State::Running, State::Registered);
        case Call::Unregister:
            return go(State::Registered, State::Made);
        case Call::Create:
        case Call::Dispose:
            break;
        }
        return 0;
    }

    bool isRunning() const { return state == State::Running; }
    /// How often it should have told that it stopped.
    std::size_t stops = 0;

private:
    enum class State { Made, Registered, Running };

    std::int32_t go(State from, State to) {
        if (state != from) {
            return -10;
        }
        stops += from == State::Running ? 1 : 0;
        state = to;
        return 0;
    }

    State state = State::Made;
};

} // namespace test
