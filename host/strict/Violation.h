/// The rules between a host and a plugin that a strict host watches.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace host {

enum class Rule {
    CallFromCallback,
    ReadableNotice,
    ForeignModule,
    UnknownElement,
    UnknownAttribute,
    MissingAttribute,
    BadValue,
    UpdateBeforeSetup,
    UnknownEvent,
    ForeignHandle,
    CallbackAfterUnregister,
    CallbackAfterDispose,
    StopDoneTwice,
    StopDoneUnasked,
    CallOverdue,
};

struct RuleText {
    std::string_view name;     ///< short and stable
    std::string_view sentence; ///< what the rule asks for
};

/// In the order of `Rule`.
inline constexpr std::array ruleTexts{
    RuleText{"call-from-callback", "Inside a callback the host must not call the same plugin."},
    RuleText{"readable-notice", "A notice is one well-formed \"vtguiNotice\" in UTF-8."},
    RuleText{"foreign-module", "A notice names the module that it comes from."},
    RuleText{"unknown-element", "A notice holds only elements of the protocol, each in its place."},
    RuleText{"unknown-attribute", "An element has only the attributes that it is known for, each once."},
    RuleText{"missing-attribute", "An element has the attributes that it cannot do without."},
    RuleText{"bad-value", "An attribute has one of the values that it can have."},
    RuleText{"update-before-setup", "A control or list is set up before it is updated."},
    RuleText{"unknown-event", "The host sends only events that a notice has bound."},
    RuleText{"foreign-handle", "A callback passes the handle that it was registered with."},
    RuleText{"callback-after-unregister", "No callback comes after Unregister."},
    RuleText{"callback-after-dispose", "No callback comes after the plugin's end."},
    RuleText{"stop-done-twice", "A stop ends with StopDone once."},
    RuleText{"stop-done-unasked", "StopDone comes only of a stop."},
    RuleText{"call-overdue", "A call into the plugin returns."},
};
static_assert(ruleTexts.size() == static_cast<std::size_t>(Rule::CallOverdue) + 1);

/// A rule that was broken.
struct Violation {
    Rule rule = Rule::ReadableNotice;
    std::string text; ///< what broke it

    std::string_view name() const { return ruleTexts[static_cast<std::size_t>(rule)].name; }
    std::string_view sentence() const { return ruleTexts[static_cast<std::size_t>(rule)].sentence; }
};

/// For people, without a line end: the rule, what broke it, and what it asks for.
std::string lineOf(const Violation& violation);

} // namespace host
