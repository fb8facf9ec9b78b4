#include "presentation-plugin/alerts/WrenAlert.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <tuple>
#include <typeinfo>
#include <unordered_set>

namespace {

auto plainFields(const WrenAlert_t& alert) {
    return std::tie(alert.type, alert.priority, alert.timestamp, alert.tile_message, alert.tile_title,
                    alert.title, alert.short_message, alert.long_message, alert.toast_title,
                    alert.toast_message);
}

bool doSame(const IWrenAlertAction* left, const IWrenAlertAction* right) {
    if (left == right) {
        return true;
    }
    return left && right && typeid(*left) == typeid(*right) && left->equals(*right);
}

/// Equal actions have equal JSON, so that their hashes agree whatever their class.
std::size_t hashOf(const IWrenAlertAction* action) {
    return action ? std::hash<boost::json::value>()(action->toJson()) : 0;
}

template <class Field>
std::size_t hashOf(const Field& field) {
    return std::hash<Field>()(field);
}

std::size_t mix(std::size_t seed, std::size_t hash) {
    return seed ^ (hash + 0x9e3779b9u + (seed << 6) + (seed >> 2));
}

struct HashAlert {
    std::size_t operator()(const WrenAlert_t* alert) const {
        std::size_t hash = hashOf(alert->action.get());
        std::apply([&hash](const auto&... fields) { ((hash = mix(hash, hashOf(fields))), ...); },
                   plainFields(*alert));
        return hash;
    }
};

struct EqualAlerts {
    bool operator()(const WrenAlert_t* left, const WrenAlert_t* right) const { return *left == *right; }
};

using Alerts = std::span<const WrenAlert_t>;

/// Few enough to be looked for one by one.
constexpr std::size_t few = 8;

bool containsAll(Alerts old, Alerts wanted) {
    return std::ranges::all_of(
        wanted, [old](const WrenAlert_t& alert) { return std::ranges::find(old, alert) != old.end(); });
}

bool containsAllOfMany(Alerts old, Alerts wanted) {
    std::unordered_set<const WrenAlert_t*, HashAlert, EqualAlerts> known(old.size());
    for (const WrenAlert_t& alert : old) {
        known.insert(&alert);
    }
    return std::ranges::all_of(wanted, [&known](const WrenAlert_t& alert) { return known.contains(&alert); });
}

} // namespace

bool WrenAlert_t::operator==(const WrenAlert_t& other) const {
    return plainFields(*this) == plainFields(other) && doSame(action.get(), other.action.get());
}

bool hasNewAlert(const WrenAlertList_t& newList, const WrenAlertList_t& oldList) {
    // Mostly little has happened: what both lists begin with and what both end with is not new.
    const Alerts old = oldList.alerts;
    Alerts rest = newList.alerts;
    const auto begin = std::ranges::mismatch(rest, old);
    Alerts oldRest = old.subspan(static_cast<std::size_t>(begin.in2 - old.begin()));
    rest = rest.subspan(static_cast<std::size_t>(begin.in1 - rest.begin()));
    while (!rest.empty() && !oldRest.empty() && rest.back() == oldRest.back()) {
        rest = rest.first(rest.size() - 1);
        oldRest = oldRest.first(oldRest.size() - 1);
    }
    return rest.size() <= few ? !containsAll(old, rest) : !containsAllOfMany(old, rest);
}
