/// The notation of transition tables: states, events, guards, actions and rows as types.
///
/// The spelling is that of boost::ext::sml, for the part of it that our tables need:
///
///     make_transition_table(
///         *state<A> + event<E> [guard{}] / (first{}, second{}) = state<B>,  // * marks a region's first
///         state
///          state<A> + event<F> / action{},                                  // internal: the state stays
///          state<B> = state<C>,                                             // completion
///          state<C> + exception<X> / process(E{}) = state<A>)
///
/// Guards and actions are captureless function objects. Everything here is evaluated by the compiler; the
/// engine that runs the tables is SmlEngine.h.
#pragma once

#include <type_traits>

namespace sml {

namespace back {

/// Stands for "no state" in names.
struct _ {};
struct initial {};

/// The event that a machine raises at its start.
template <class From, class To>
struct on_entry {};

/// The completion event.
struct anonymous {};

/// The event that a thrown exception becomes.
template <class Exception, class = Exception>
struct exception {
    const Exception& exception_;
};

/// An action that raises `Event` on the root's queue.
template <class Event>
struct process_event_action {};

template <class... Events>
class process;

} // namespace back

namespace front {

struct always {};
struct none {};

template <class... Actions>
struct sequence {};

template <class Guard>
struct negation {};

/// One row of a table. `Target` is `none` for an internal transition.
template <class Source, bool Initial, class Event, class Guard, class Action, class Target>
struct transition;

template <class T, bool Initial = false>
struct state {
    using type = T;

    constexpr state<T, true> operator*() const { return {}; }

    /// A completion row.
    template <class Target>
    constexpr transition<T, Initial, back::anonymous, always, none, Target> operator=(state<Target>) const {
        return {};
    }
};

template <class Event, class Guard = always, class Action = none>
struct event {
    template <class NewGuard>
    constexpr event<Event, NewGuard, Action> operator[](NewGuard) const {
        return {};
    }

    template <class NewAction>
    constexpr event<Event, Guard, NewAction> operator/(NewAction) const {
        return {};
    }
};

template <class Source_, bool Initial, class Event_, class Guard_, class Action_, class Target_>
struct transition {
    using Source = Source_;
    using Event = Event_;
    using Guard = Guard_;
    using Action = Action_;
    using Target = Target_;
    static constexpr bool isInitial = Initial;
    static constexpr bool isInternal = std::is_same_v<Target, none>;

    template <class NewTarget>
    constexpr transition<Source, Initial, Event, Guard, Action, NewTarget> operator=(state<NewTarget>) const {
        return {};
    }
};

template <class T, bool Initial, class Event, class Guard, class Action>
constexpr transition<T, Initial, Event, Guard, Action, none> operator+(state<T, Initial>,
                                                                       event<Event, Guard, Action>) {
    return {};
}

struct process_factory {
    template <class Event>
    constexpr back::process_event_action<Event> operator()(const Event&) const {
        static_assert(std::is_empty_v<Event>, "an event raised from a table carries nothing");
        return {};
    }
};

template <class... Rows>
struct transition_table {};

} // namespace front

namespace aux {

/// Hands a state's type to the logger. Characters of a name might follow it.
template <class T, T...>
struct string;
template <class T>
struct string<T> {
    using type = T;
};

/// A guard or an action: an empty function object, or one of the notation's own.
template <class T>
inline constexpr bool isFunctor = std::is_empty_v<T>&& requires {
    &T::operator();
};
template <class Event>
inline constexpr bool isFunctor<back::process_event_action<Event>> = true;
template <class... Actions>
inline constexpr bool isFunctor<front::sequence<Actions...>> = true;

} // namespace aux

template <class T>
inline constexpr front::state<T> state{};

template <class T>
inline constexpr front::event<T> event{};

template <class T>
inline constexpr front::event<back::exception<T>> exception{};

inline constexpr front::process_factory process{};

template <class First, class Second>
requires(aux::isFunctor<First>&& aux::isFunctor<Second>) constexpr front::sequence<First, Second>
operator,(First, Second) {
    return {};
}

template <class Guard>
requires(aux::isFunctor<Guard>) constexpr front::negation<Guard> operator!(Guard) { return {}; }

template <class... Rows>
constexpr front::transition_table<Rows...> make_transition_table(Rows...) {
    return {};
}

} // namespace sml
