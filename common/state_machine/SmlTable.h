/// Facts about a transition table, found by the compiler: the numbers of its states, the regions of its rows,
/// which events it knows, and what its function objects ask for. For the engine (SmlEngine.h).
#pragma once

#include "common/state_machine/SmlNotation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

namespace sml::aux {

template <class T, class... Ts>
consteval std::size_t indexOf() {
    std::size_t index = 0;
    const bool found = ((std::is_same_v<T, Ts> || (++index, false)) || ...);
    return found ? index : sizeof...(Ts);
}

template <class Function>
struct Signature;
template <class Result, class Functor, class... Arguments>
struct Signature<Result (Functor::*)(Arguments...) const> {
    using List = std::tuple<Arguments...>*;
};

/// The parameter types of a function object, as a null pointer to a tuple of them.
template <class Functor>
using ParametersOf = typename Signature<decltype(&Functor::operator())>::List;

/// A state that is a machine of its own: its type is a table's definition.
template <class T>
concept SubMachine = requires {
    std::declval<T&>()();
};

/// Facts about a table, found by the compiler.
template <class Definition, class Table = decltype(std::declval<Definition>()())>
struct Model;

template <class Definition, class... Rows>
struct Model<Definition, front::transition_table<Rows...>> {
    static constexpr std::size_t rowCount = sizeof...(Rows);
    static constexpr std::size_t regionCount = (std::size_t{Rows::isInitial} + ...);

    /// States are numbered by the first row that they are the source of; a state that is no source has the
    /// number of the first row that leads to it, behind all rows.
    template <class State>
    static consteval std::uint8_t number() {
        const std::size_t asSource = indexOf<State, typename Rows::Source...>();
        return static_cast<std::uint8_t>(
            asSource < rowCount ? asSource : rowCount + indexOf<State, typename Rows::Target...>());
    }
    static_assert(2 * rowCount < 256);

    /// The number of the first state of each region.
    static consteval std::array<std::uint8_t, regionCount> initialStates() {
        std::array<std::uint8_t, regionCount> states{};
        std::size_t region = 0;
        ((Rows::isInitial ? void(states[region++] = number<typename Rows::Source>()) : void()), ...);
        return states;
    }

    /// The region of each row: the one from whose first state the row's source can be reached.
    static consteval std::array<std::size_t, rowCount> regionsOfRows() {
        constexpr std::array sources{number<typename Rows::Source>()...};
        constexpr std::array targets{number<typename Rows::Target>()...};
        constexpr std::array internal{Rows::isInternal...};
        std::array<std::size_t, 2 * rowCount + 1> regionOfState{};
        regionOfState.fill(regionCount);
        std::size_t region = 0;
        for (const std::uint8_t state : initialStates()) {
            regionOfState[state] = region++;
        }
        for (std::size_t pass = 0; pass < rowCount; ++pass) {
            for (std::size_t row = 0; row < rowCount; ++row) {
                if (!internal[row] && regionOfState[sources[row]] < regionCount) {
                    regionOfState[targets[row]] = regionOfState[sources[row]];
                }
            }
        }
        std::array<std::size_t, rowCount> regions{};
        for (std::size_t row = 0; row < rowCount; ++row) {
            regions[row] = regionOfState[sources[row]];
        }
        return regions;
    }

    template <class Event>
    static constexpr bool knows = (std::is_same_v<Event, typename Rows::Event> || ...);
};

/// The facts that are asked for again and again, each found only once: compilers do not remember the results
/// of functions.
template <class Definition, class State>
inline constexpr std::uint8_t numberOf = Model<Definition>::template number<State>();
template <class Definition>
inline constexpr auto initialStatesOf = Model<Definition>::initialStates();
template <class Definition>
inline constexpr auto regionsOfRowsOf = Model<Definition>::regionsOfRows();

/// The one dependency that a table's function objects take: their parameter that is a non-const reference.
template <class Table>
struct DependencyOf;
template <class... Rows>
struct DependencyOf<front::transition_table<Rows...>> {
    struct Nothing {};

    template <class First, class... Rest>
    static auto pick(std::tuple<First, Rest...>*) {
        if constexpr (std::is_lvalue_reference_v<First> && !std::is_const_v<std::remove_reference_t<First>>) {
            return static_cast<std::remove_reference_t<First>*>(nullptr);
        } else {
            return pick(static_cast<std::tuple<Rest...>*>(nullptr));
        }
    }
    static Nothing* pick(std::tuple<>*) { return nullptr; }

    template <class Functor>
    static auto ofAction(Functor) {
        return pick(ParametersOf<Functor>());
    }
    template <class First, class Second>
    static auto ofAction(front::sequence<First, Second>) {
        return ofAction(First());
    }
    template <class Event>
    static Nothing* ofAction(back::process_event_action<Event>) {
        return nullptr;
    }
    static Nothing* ofAction(front::none) { return nullptr; }

    template <class First, class... Rest>
    static auto firstOf() {
        using Found = decltype(ofAction(typename First::Action()));
        if constexpr (std::is_same_v<Found, Nothing*>) {
            return firstOf<Rest...>();
        } else {
            return Found();
        }
    }
    using Type = std::remove_pointer_t<decltype(firstOf<Rows...>())>;
};

} // namespace sml::aux
