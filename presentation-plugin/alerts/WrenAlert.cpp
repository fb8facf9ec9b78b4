#include "presentation-plugin/alerts/WrenAlert.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <compare>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <typeinfo>
#include <vector>

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

/// An alert as sorting compares it. Sorting, unlike hashing, stays fast whatever texts a document holds.
class SortedAlert {
public:
    explicit SortedAlert(const WrenAlert_t& described)
        : alert(&described) {}

    /// First in the order in which alerts are shown, so that a list is mostly sorted already.
    bool operator<(const SortedAlert& other) const {
        const auto shown = std::tie(alert->priority, other.alert->timestamp) <=>
                           std::tie(other.alert->priority, alert->timestamp);
        const auto order = std::is_eq(shown) ? plainFields(*alert) <=> plainFields(*other.alert) : shown;
        return std::is_eq(order) ? textOfAction() < other.textOfAction() : std::is_lt(order);
    }

private:
    /// Actions are equal if their JSON is. It is written when it is first needed: few alerts differ by it
    /// alone.
    const std::string& textOfAction() const {
        if (!actionText) {
            actionText = alert->action ? boost::json::serialize(alert->action->toJson()) : std::string();
        }
        return *actionText;
    }

    const WrenAlert_t* alert;
    mutable std::optional<std::string> actionText;
};

using Alerts = std::span<const WrenAlert_t>;

/// Few enough to be looked for one by one.
constexpr std::size_t few = 8;

bool containsAll(Alerts old, Alerts wanted) {
    return std::ranges::all_of(
        wanted, [old](const WrenAlert_t& alert) { return std::ranges::find(old, alert) != old.end(); });
}

bool containsAllOfMany(Alerts old, Alerts wanted) {
    std::vector<SortedAlert> sorted(old.begin(), old.end());
    if (!std::is_sorted(sorted.begin(), sorted.end())) {
        std::sort(sorted.begin(), sorted.end());
    }
    return std::ranges::all_of(wanted, [&sorted](const WrenAlert_t& alert) {
        return std::binary_search(sorted.begin(), sorted.end(), SortedAlert(alert));
    });
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
