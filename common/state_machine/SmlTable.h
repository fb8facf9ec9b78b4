/// Facts about a transition table, found by the compiler: its states as sets of bits, the regions of its
/// rows, which events it knows, and what its function objects ask for. For the engine (SmlEngine.h).
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

/// States of one table, a bit each.
using StateSet = std::uint64_t;

template <class Definition>
using TableOf = decltype(std::declval<Definition>()());

template <class Row>
using TargetOf = std::conditional_t<Row::isInternal, typename Row::Source, typename Row::Target>;

/// Where a table mentions its states: each row as its source, then each row as its target.
template <class Table>
struct Mentions;
template <class... Rows>
struct Mentions<front::transition_table<Rows...>> {
    template <class State>
    static consteval std::size_t first() {
        return indexOf<State, typename Rows::Source..., TargetOf<Rows>...>();
    }
    static constexpr std::array<std::size_t, 2 * sizeof...(Rows)> firsts{first<typename Rows::Source>()...,
                                                                         first<TargetOf<Rows>>()...};
};

/// A state as the set of itself. States are numbered by their first mention.
template <class Definition, class State>
inline constexpr StateSet stateOf = [] {
    using Table = Mentions<TableOf<Definition>>;
    StateSet state = 1;
    for (std::size_t mention = 0; mention < Table::template first<State>(); ++mention) {
        state <<= Table::firsts[mention] == mention ? 1 : 0;
    }
    return state;
}();

/// Facts about a table, found by the compiler.
template <class Definition, class Table = TableOf<Definition>>
struct Model;

template <class Definition, class... Rows>
struct Model<Definition, front::transition_table<Rows...>> {
    static constexpr std::size_t rowCount = sizeof...(Rows);
    static constexpr std::size_t regionCount = (std::size_t{Rows::isInitial} + ...);
    static_assert(((stateOf<Definition, typename Rows::Source> != 0) && ...), "too many states");
    static_assert(((stateOf<Definition, TargetOf<Rows>> != 0) && ...), "too many states");

    /// The first state of each region.
    static consteval std::array<StateSet, regionCount> initialStates() {
        std::array<StateSet, regionCount> states{};
        std::size_t region = 0;
        ((Rows::isInitial ? void(states[region++] = stateOf<Definition, typename Rows::Source>) : void()),
         ...);
        return states;
    }

    /// The region of each row: the one from whose first state the row's source can be reached.
    static consteval std::array<std::size_t, rowCount> regionsOfRows() {
        constexpr std::array sources{stateOf<Definition, typename Rows::Source>...};
        constexpr std::array targets{stateOf<Definition, TargetOf<Rows>>...};
        std::array<StateSet, regionCount> reached = initialStates();
        std::array<std::size_t, rowCount> regions{};
        for (std::size_t pass = 0; pass < rowCount; ++pass) {
            for (std::size_t row = 0; row < rowCount; ++row) {
                for (std::size_t region = 0; region < regionCount; ++region) {
                    if (reached[region] & sources[row]) {
                        reached[region] |= targets[row];
                        regions[row] = region;
                    }
                }
            }
        }
        return regions;
    }
};

/// The facts that are asked for again and again, each found only once: compilers do not remember the results
/// of functions.
template <class Definition>
inline constexpr auto initialStatesOf = Model<Definition>::initialStates();
template <class Definition>
inline constexpr auto regionsOfRowsOf = Model<Definition>::regionsOfRows();

/// The states that have a row for the event.
template <class Definition, class Event, class Table = TableOf<Definition>>
inline constexpr StateSet sourcesOf = 0;
template <class Definition, class Event, class... Rows>
inline constexpr StateSet sourcesOf<Definition, Event, front::transition_table<Rows...>> =
    ((std::is_same_v<Event, typename Rows::Event> ? stateOf<Definition, typename Rows::Source> : 0) | ...);

template <class Definition, class Event>
inline constexpr bool knows = sourcesOf<Definition, Event> != 0;

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
