#include "presentation-plugin/alerts/WrenAlert.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <cstddef>
#include <functional>
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

} // namespace

bool WrenAlert_t::operator==(const WrenAlert_t& other) const {
    return plainFields(*this) == plainFields(other) && doSame(action.get(), other.action.get());
}

bool hasNewAlert(const WrenAlertList_t& newList, const WrenAlertList_t& oldList) {
    if (newList.alerts == oldList.alerts) {
        return false; // the usual case: nothing has happened
    }
    std::unordered_set<const WrenAlert_t*, HashAlert, EqualAlerts> known(oldList.alerts.size());
    for (const WrenAlert_t& alert : oldList.alerts) {
        known.insert(&alert);
    }
    return std::any_of(newList.alerts.begin(), newList.alerts.end(),
                       [&known](const WrenAlert_t& alert) { return !known.contains(&alert); });
}
