#include "presentation-plugin/alerts/WrenAlertAction.h"

#include <boost/json/value.hpp>

#include <utility>

WrenAlertLocalAction::WrenAlertLocalAction(std::string labelText, std::string titleText,
                                           std::string descriptionText, std::string eventType,
                                           std::string eventValue)
    : label(std::move(labelText))
    , title(std::move(titleText))
    , description(std::move(descriptionText))
    , type(std::move(eventType))
    , value(std::move(eventValue)) {}

boost::json::value WrenAlertLocalAction::toJson() const {
    return {{"type", "local"},
            {"label", label},
            {"detailPage", {{"title", title}, {"description", description}}},
            {"kestrelSuiteEvent", {{"type", type}, {"value", value}}}};
}

bool WrenAlertLocalAction::equals(const IWrenAlertAction& other) const {
    const auto& action = static_cast<const WrenAlertLocalAction&>(other);
    return label == action.label && title == action.title && description == action.description &&
           type == action.type && value == action.value;
}

WrenAlertRemoteAction::WrenAlertRemoteAction(std::string labelText, std::string address)
    : label(std::move(labelText))
    , url(std::move(address)) {}

boost::json::value WrenAlertRemoteAction::toJson() const {
    return {{"type", "remote"}, {"label", label}, {"url", url}};
}

bool WrenAlertRemoteAction::equals(const IWrenAlertAction& other) const {
    const auto& action = static_cast<const WrenAlertRemoteAction&>(other);
    return label == action.label && url == action.url;
}
