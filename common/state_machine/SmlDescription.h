/// Reads a transition table off its type. The table is in the notation of SmlNotation.h: who includes this
/// compiles with that, whatever library runs the machine.
#pragma once

#include "common/state_machine/SmTypeName.h"
#include "common/state_machine/SmlTable.h"
#include "common/state_machine/SmlWords.h"

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

namespace smlDescription {

template <class T>
struct Words {
    static std::string text() { return std::string(smTypeName::bareNameOf<T>()); }
};
template <>
struct Words<sml::front::always> {
    static std::string text() { return {}; }
};
template <>
struct Words<sml::front::none> : Words<sml::front::always> {};
template <>
struct Words<sml::back::anonymous> : Words<sml::front::always> {};
template <class Guard>
struct Words<sml::front::negation<Guard>> {
    static std::string text() { return std::string("!").append(Words<Guard>::text()); }
};
template <class First, class Second>
struct Words<sml::front::sequence<First, Second>> {
    static std::string text() { return Words<First>::text().append(", ").append(Words<Second>::text()); }
};
template <class Event>
struct Words<sml::back::process_event_action<Event>> {
    static std::string text() { return std::string("process(").append(Words<Event>::text()).append(")"); }
};
template <class T>
struct Words<sml::back::exception<T, T>> {
    static std::string text() { return std::string("exception<").append(Words<T>::text()).append(">"); }
};

/// An action without a name does nothing: the row is there to take its event.
template <class Action>
std::string actionWords() {
    std::string words = Words<Action>::text();
    return words.find("lambda") == std::string::npos ? words : std::string();
}

template <class Row_>
Row describeRow() {
    return {Words<typename Row_::Source>::text(), Words<typename Row_::Event>::text(),
            Words<typename Row_::Guard>::text(), actionWords<typename Row_::Action>(),
            Words<typename Row_::Target>::text()};
}

inline void addState(Region& region, const std::string& state) {
    if (!state.empty() && std::ranges::find(region.states, state) == region.states.end()) {
        region.states.push_back(state);
    }
}

template <class Definition, class... Rows>
std::vector<Region> describe(std::type_identity<sml::front::transition_table<Rows...>>) {
    const auto& regionsOfRows = sml::aux::regionsOfRowsOf<Definition>;
    std::vector<Region> regions(sml::aux::Model<Definition>::regionCount);
    std::size_t index = 0;
    const auto add = [&](const Row& row, bool isInitial) {
        Region& region = regions[regionsOfRows[index++]];
        if (isInitial) {
            region.initial = row.from;
        }
        addState(region, row.from);
        addState(region, row.to);
        region.rows.push_back(row);
    };
    (add(describeRow<Rows>(), Rows::isInitial), ...);
    return regions;
}

/// The regions of the machine that `Definition` defines, in the table's order.
template <class Definition>
std::vector<Region> describe() {
    return describe<Definition>(std::type_identity<decltype(Definition()())>());
}

} // namespace smlDescription
