/// What a machine of the engine (SmlEngine.h) is made of: its regions with their current states, and its
/// queue.
#pragma once

#include "common/state_machine/SmlTable.h"

#include <array>
#include <cstddef>
#include <functional>
#include <numeric>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace sml {

namespace aux {

/// An event waiting in a queue: how to dispatch it. Queued events carry nothing.
using QueuedEvent = bool (*)(void* machine);

/// First in, first out; keeps its memory.
class EventQueue {
public:
    bool isEmpty() const { return waiting.empty(); }
    void push(QueuedEvent event) { waiting.push_back(event); }
    /// Takes the oldest event off; the queue must not be empty.
    QueuedEvent pop() {
        const QueuedEvent event = waiting[next++];
        if (next == waiting.size()) {
            waiting.clear();
            next = 0;
        }
        return event;
    }

private:
    std::vector<QueuedEvent> waiting; ///< emptied when the last has been taken off
    std::size_t next = 0;
};

} // namespace aux

namespace back {

/// Raises events on the queue of the machine whose table holds the action.
template <class... Events>
class process {
public:
    process(aux::EventQueue& target, const std::array<aux::QueuedEvent, sizeof...(Events)>& handlers)
        : queue(target)
        , dispatchers(handlers) {}

    template <class Event>
    void operator()(const Event&) {
        queue.push(dispatchers[aux::indexOf<Event, Events...>()]);
    }

private:
    aux::EventQueue& queue;
    std::array<aux::QueuedEvent, sizeof...(Events)> dispatchers;
};

} // namespace back

namespace aux {

/// The states of a table's regions, and how one event runs through its rows.
template <class Definition>
class Regions {
public:
    void enter() { current = allInitialStates; }

    template <class State>
    bool isIn() const {
        return (current & stateOf<Definition, State>) != 0;
    }

    /// Offers the event to every region in order.
    /// @return whether any took it
    template <class Event, class Context>
    bool offer(const Event& event, Context& context) {
        if constexpr (knows<Definition, Event>) {
            return offerToRegions(event, context, std::make_index_sequence<initialStates.size()>());
        } else {
            return false;
        }
    }

    /// Whether some current state has a row for one of the events, whatever its guard says.
    template <class... Events>
    bool mayTake() const {
        return (current & (sourcesOf<Definition, Events> | ...)) != 0;
    }

private:
    using Table = TableOf<Definition>;
    static constexpr auto initialStates = initialStatesOf<Definition>;
    static constexpr StateSet allInitialStates =
        std::accumulate(initialStates.begin(), initialStates.end(), StateSet(), std::bit_or<>());

    template <class Event, class Context, std::size_t... Region>
    bool offerToRegions(const Event& event, Context& context, std::index_sequence<Region...>) {
        bool taken = false;
        ((taken |= offerToRows<Region>(event, context, Table())), ...);
        return taken;
    }

    template <std::size_t Region, class Event, class Context, class... Rows>
    bool offerToRows(const Event& event, Context& context, front::transition_table<Rows...>) {
        return offerToRows<Region, Event, Context, Rows...>(event, context,
                                                            std::index_sequence_for<Rows...>());
    }

    template <std::size_t Region, class Event, class Context, class... Rows, std::size_t... Row>
    bool offerToRows(const Event& event, Context& context, std::index_sequence<Row...>) {
        return (take<Rows, Row, Region>(event, context) || ...);
    }

    template <class Row, std::size_t Index, std::size_t Region, class Event, class Context>
    bool take(const Event& event, Context& context) {
        if constexpr (std::is_same_v<Event, typename Row::Event> &&
                      regionsOfRowsOf<Definition>[Index] == Region) {
            if (!isIn<typename Row::Source>() || !context.allows(typename Row::Guard(), event)) {
                return false;
            }
            if constexpr (!Row::isInternal) {
                context.template changeState<Definition, typename Row::Source, typename Row::Target>();
                current ^=
                    stateOf<Definition, typename Row::Source> ^ stateOf<Definition, typename Row::Target>;
            }
            context.run(typename Row::Action(), event);
            return true;
        } else {
            return false;
        }
    }

    StateSet current = allInitialStates; ///< one of each region
};

/// A sub-machine as its root keeps it.
template <class Definition>
struct Child {
    Regions<Definition> regions;
    EventQueue queue;
};

/// The sub-machines among a table's targets, as a tuple of `Child`.
template <class Table>
struct ChildrenOf;
template <class... Rows>
struct ChildrenOf<front::transition_table<Rows...>> {
    template <class State>
    using Entry = std::conditional_t<SubMachine<State>, std::tuple<Child<State>>, std::tuple<>>;
    using Tuple = decltype(std::tuple_cat(std::declval<Entry<typename Rows::Target>>()...));
};

} // namespace aux

} // namespace sml
