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

#include "common/state_machine/SmlRegions.h"

#include <tuple>
#include <type_traits>

namespace sml {

/// Policies of `sm`: who is told of every event and change of state, and that events may be queued.
template <class Logger>
struct logger {};
template <template <class...> class Queue>
struct process_queue {};

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
