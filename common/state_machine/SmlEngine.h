/// The engine that runs transition tables written in the notation of SmlNotation.h.
///
/// A root machine has one region and may have sub-machines as states; a sub-machine has any number of
/// regions, one for each row marked with *. One event runs as follows:
///
/// 1. The logger hears of it. A sub-machine that is the current state and knows the event hears it next and
///    offers it to each of its regions in table order; then its own queue is emptied, first in first out.
/// 2. A row of the root for the event is taken: the state changes first, then the actions run in order.
/// 3. The completion event follows, repeatedly while it fires; then the root's queue is emptied, each queued
///    event running through steps 1 and 2, and the completion event comes again.
///
/// `process_event` is true if some row took the event, and likewise every event that was queued meanwhile. An
/// exception of an action becomes an event of the root, if the root's table names its type; any other is
/// dropped, and the event counts as not taken.
///
/// A machine has no lock and no thread: its owner calls it from one thread at a time, and never from inside
/// an action. Nothing is allocated once the queues have reached their largest size.
#pragma once

#include "common/state_machine/SmlTable.h"

#include <array>
#include <cstddef>
#include <functional>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

namespace sml {

/// Policies of `sm`: who is told of every event and change of state, and that events may be queued.
template <class Logger>
struct logger {};
template <template <class...> class Queue>
struct process_queue {};

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

/// A root machine. Its constructor starts it.
template <class Definition, class LoggerPolicy, class QueuePolicy>
class sm;

template <class Definition, class Logger, template <class...> class Queue>
class sm<Definition, logger<Logger>, process_queue<Queue>> {
    using Table = aux::TableOf<Definition>;
    using Dependency = typename aux::DependencyOf<Table>::Type;

public:
    /// @param dependency what the actions and guards work on; must outlive the machine, as must the logger
    sm(Dependency& dependency_, Logger& logger_)
        : dependency(dependency_)
        , log(logger_) {
        log.template log_process_event<Definition>(back::on_entry<back::_, back::initial>());
        complete(true);
    }
    sm(const sm&) = delete;
    sm& operator=(const sm&) = delete;

    /// @return whether the event and all events queued meanwhile were taken
    template <class Event>
    bool process_event(const Event& event) {
        if (passBy<Event, back::anonymous>()) {
            return false;
        }
        const bool taken = dispatch(event);
        return isComplete() ? taken : complete(taken);
    }

    /// Whether the root is in that state.
    template <class State>
    bool is(front::state<State>) const {
        return regions.template isIn<State>();
    }

    /// Whether the regions of the sub-machine are in those states, one for each region in table order.
    template <class SubMachineState, class... States>
    bool is(front::state<States>...) const {
        const auto& child = std::get<aux::Child<typename SubMachineState::type>>(children);
        return (child.regions.template isIn<States>() && ...);
    }

private:
    /// Gives guards and actions what they ask for, on behalf of the machine that owns `queue`.
    template <class Machine>
    struct Context {
        sm& root;
        Machine& machine;
        aux::EventQueue& queue;

        template <class Owner, class Source, class Target>
        void changeState() {
            root.log.template log_state_change<Owner>(aux::string<Source>(), aux::string<Target>());
            if constexpr (aux::SubMachine<Target>) {
                std::get<aux::Child<Target>>(root.children).regions.enter();
            }
        }

        template <class Event>
        bool allows(front::always, const Event&) {
            return true;
        }
        template <class Guard, class Event>
        bool allows(front::negation<Guard>, const Event& event) {
            return !call(Guard(), event, aux::ParametersOf<Guard>());
        }
        template <class Guard, class Event>
        bool allows(Guard guard, const Event& event) {
            return call(guard, event, aux::ParametersOf<Guard>());
        }

        template <class Event>
        void run(front::none, const Event&) {}
        template <class First, class Second, class Event>
        void run(front::sequence<First, Second>, const Event& event) {
            run(First(), event);
            run(Second(), event);
        }
        template <class Raised, class Event>
        void run(back::process_event_action<Raised>, const Event&) {
            root.queue.push(&sm::dispatchQueued<Raised>);
        }
        template <class Action, class Event>
        void run(Action action, const Event& event) {
            call(action, event, aux::ParametersOf<Action>());
        }

        template <class Functor, class Event, class... Parameters>
        auto call(Functor functor, const Event& event, std::tuple<Parameters...>*) {
            return functor(argument(event, static_cast<std::type_identity<Parameters>*>(nullptr))...);
        }

        template <class Event>
        const Event& argument(const Event& event, std::type_identity<const Event&>*) {
            return event;
        }
        template <class Event>
        Dependency& argument(const Event&, std::type_identity<Dependency&>*) {
            return root.dependency;
        }
        template <class Event, class... Raised>
        back::process<Raised...> argument(const Event&, std::type_identity<back::process<Raised...>>*) {
            return {queue, {&Context::template dispatchLater<Raised>...}};
        }

        template <class Raised>
        static bool dispatchLater(void* root) {
            if constexpr (std::is_same_v<Machine, aux::Regions<Definition>>) {
                return sm::dispatchQueued<Raised>(root);
            } else {
                return sm::dispatchQueuedToChild<Machine, Raised>(root);
            }
        }
    };

    /// Whether nobody would notice the events: nobody listens, no current state has a row for them, and an
    /// exception has left nothing in the queue of the sub-machine. A glance that spares the way through the
    /// tables.
    template <class... Events>
    bool passBy() const {
        return !isListening(log) && !regions.template mayTake<Events...>() &&
               std::apply(
                   [this](const auto&... child) {
                       return (this->template passByChild<Events...>(child) && ...);
                   },
                   children);
    }

    template <class... Events, class SubDefinition>
    bool passByChild(const aux::Child<SubDefinition>& child) const {
        return !regions.template isIn<SubDefinition>() ||
               (!child.regions.template mayTake<Events...>() && child.queue.isEmpty());
    }

    /// Whether the logger wants to hear of anything now. One that doesn't say so does.
    template <class AnyLogger>
    static bool isListening(const AnyLogger& logger) {
        if constexpr (requires { logger.isListening(); }) {
            return logger.isListening();
        } else {
            return true;
        }
    }

    /// Runs one event through the root and its current sub-machine, exceptions included.
    template <class Event>
    [[gnu::noinline]] bool dispatch(const Event& event) {
        try {
            return offer(event);
        } catch (...) {
            return dispatchException(Table());
        }
    }

    template <class Event>
    static bool dispatchQueued(void* root) {
        return static_cast<sm*>(root)->dispatch(Event());
    }

    template <class Event>
    bool offer(const Event& event) {
        log.template log_process_event<Definition>(event);
        bool taken = false;
        std::apply([&](auto&... child) { ((taken |= offerToChild(event, child)), ...); }, children);
        Context<aux::Regions<Definition>> context{*this, regions, queue};
        return regions.offer(event, context) || taken;
    }

    template <class Event, class SubDefinition>
    bool offerToChild(const Event& event, aux::Child<SubDefinition>& child) {
        if (!regions.template isIn<SubDefinition>()) {
            return false;
        }
        bool taken = false;
        if constexpr (aux::knows<SubDefinition, Event>) {
            taken = offerToRegionsOf(event, child);
        }
        return child.queue.isEmpty() ? taken : drain(child.queue, taken);
    }

    /// Runs what waits in a queue, and what is raised meanwhile. Seldom needed, so it stands apart.
    /// @return whether all was taken, and `taken`
    [[gnu::noinline]] bool drain(aux::EventQueue& waiting, bool taken) {
        while (!waiting.isEmpty()) {
            taken &= waiting.pop()(this);
        }
        return taken;
    }

    template <class Event, class SubDefinition>
    bool offerToRegionsOf(const Event& event, aux::Child<SubDefinition>& child) {
        log.template log_process_event<SubDefinition>(event);
        Context<aux::Child<SubDefinition>> context{*this, child, child.queue};
        return child.regions.offer(event, context);
    }

    template <class ChildOfRoot, class Event>
    static bool dispatchQueuedToChild(void* root) {
        sm& self = *static_cast<sm*>(root);
        return self.offerToRegionsOf(Event(), std::get<ChildOfRoot>(self.children));
    }

    /// Sorts the exception being handled by the types that the root's table names.
    template <class... Rows>
    bool dispatchException(front::transition_table<Rows...>) {
        bool taken = false;
        static_cast<void>((catchAs<Rows>(static_cast<typename Rows::Event*>(nullptr), taken) || ...));
        return taken;
    }

    template <class Row, class Event>
    bool catchAs(Event*, bool&) {
        return false;
    }
    template <class Row, class Exception>
    bool catchAs(back::exception<Exception>*, bool& taken) {
        try {
            throw;
        } catch (const Exception& thrown) {
            try {
                taken = offer(back::exception<Exception>{thrown});
            } catch (...) {
                taken = false;
            }
            return true;
        } catch (...) {
            return false;
        }
    }

    /// Whether nothing is left to do behind an event.
    bool isComplete() const { return passBy<back::anonymous>() && queue.isEmpty(); }

    /// The completion event, and the queue.
    [[gnu::noinline]] bool complete(bool taken) {
        for (;;) {
            while (dispatch(back::anonymous())) {
            }
            if (queue.isEmpty()) {
                return taken;
            }
            taken = drain(queue, taken);
        }
    }

    Dependency& dependency;
    Logger& log;
    aux::Regions<Definition> regions;
    typename aux::ChildrenOf<Table>::Tuple children;
    aux::EventQueue queue;
};

} // namespace sml
