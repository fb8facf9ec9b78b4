/// What an alert lets the user do about it. Actions are immutable.
#pragma once

#include <boost/json/fwd.hpp>

#include <string>

class IWrenAlertAction {
public:
    virtual ~IWrenAlertAction() = default;

    /// The action as the alert page reads it.
    virtual boost::json::value toJson() const = 0;

    /// Whether both do the same.
    /// @param other an action of the same class
    virtual bool equals(const IWrenAlertAction& other) const = 0;
};

/// An action within the alert page: it leads to a detail page, and from there an event goes back to the
/// plugin.
class WrenAlertLocalAction : public IWrenAlertAction {
public:
    WrenAlertLocalAction(std::string labelText, std::string titleText, std::string descriptionText,
                         std::string eventType, std::string eventValue);

    boost::json::value toJson() const override;
    bool equals(const IWrenAlertAction& other) const override;

    const std::string label;       ///< on the button
    const std::string title;       ///< heading of the detail page
    const std::string description; ///< text of the detail page
    const std::string type;        ///< what the event asks for
    const std::string value;       ///< whom it is about: an enrollment's id or an authentication's context
};

/// An action that opens an address.
class WrenAlertRemoteAction : public IWrenAlertAction {
public:
    WrenAlertRemoteAction(std::string labelText, std::string address);

    boost::json::value toJson() const override;
    bool equals(const IWrenAlertAction& other) const override;

    const std::string label; ///< on the button
    const std::string url;
};
