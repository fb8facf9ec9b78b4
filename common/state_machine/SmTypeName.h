/// The names of machines, states and events as the trace shows them: the type's name behind its class-key,
/// on every compiler.
///
/// States are only ever declared, as classes; machines and events are defined, as structs. That is what the
/// class-key is read from, so a state must not be defined anywhere.
#pragma once

#include "common/state_machine/Sml.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace smTypeName {

template <class T>
constexpr std::string_view signatureOf() {
    return __PRETTY_FUNCTION__;
}

/// The bare name, cut out of a function's signature: what stands before and behind it is learnt from a type
/// whose name is known.
template <class T>
constexpr std::string_view bareNameOf() {
    constexpr std::string_view probe = signatureOf<int>();
    constexpr std::size_t before = probe.rfind("int");
    constexpr std::size_t behind = probe.size() - before - 3;
    constexpr std::string_view signature = signatureOf<T>();
    return signature.substr(before, signature.size() - before - behind);
}

template <class T>
concept Defined = requires {
    sizeof(T);
};

/// Pieces joined at compile time.
template <const std::string_view&... Pieces>
struct Joined {
    static constexpr auto text = [] {
        std::array<char, (Pieces.size() + ...)> joined{};
        std::size_t length = 0;
        const auto append = [&](std::string_view piece) {
            for (const char character : piece) {
                joined[length++] = character;
            }
        };
        (append(Pieces), ...);
        return joined;
    }();
    static constexpr std::string_view value{text.data(), text.size()};
};

/// The type behind the wrappers that the library puts around states and machines: their first argument.
template <class T>
struct Unwrapped {
    using type = T;
};
template <template <class...> class Wrapper, class T, class... Rest>
struct Unwrapped<Wrapper<T, Rest...>> : Unwrapped<T> {};
template <class T>
struct Unwrapped<sml::aux::string<T>> : Unwrapped<T> {};

template <class T>
struct Name {
    using Plain = typename Unwrapped<T>::type;
    static constexpr std::string_view key = Defined<Plain> ? "struct " : "class ";
    static constexpr std::string_view bare = bareNameOf<Plain>();
    static constexpr std::string_view value = Joined<key, bare>::value;
};

template <>
struct Name<sml::back::anonymous> {
    static constexpr std::string_view value = "struct boost::ext::sml::v1_1_11::back::anonymous";
};

template <class From, class To>
struct Name<sml::back::on_entry<From, To>> {
    static constexpr std::string_view value =
        "struct boost::ext::sml::v1_1_11::back::on_entry<struct boost::ext::sml::v1_1_11::back::_,"
        "struct boost::ext::sml::v1_1_11::back::initial>";
};

/// The class-keys of exceptions differ from those of states: they are classes, and defined.
template <class T, class Raised>
struct Name<sml::back::exception<T, Raised>> {
    static constexpr std::string_view before = "struct boost::ext::sml::v1_1_11::back::exception<class ";
    static constexpr std::string_view between = ",class ";
    static constexpr std::string_view behind = ">";
    static constexpr std::string_view bare = bareNameOf<T>();
    static constexpr std::string_view value = Joined<before, bare, between, bare, behind>::value;
};

} // namespace smTypeName

/// The name of a machine, state or event type in the trace.
template <class T>
inline constexpr std::string_view smTypeNameOf = smTypeName::Name<T>::value;
