#include "host/strict/NoticeVocabulary.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace host {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view moduleName = "com.norvane.vantor.presentation.quill";

// What a value can be. Where there are words, it is one of them.
constexpr std::array<std::string_view, 2> flags{"true", "false"};
constexpr std::array<std::string_view, 7> noticeTypes{
    "setup", "popup", "update", "quit", "apilog", "refresh_ui", "refresh_approval_wizard_ui"};
constexpr std::array<std::string_view, 8> trayStates{"Error",   "Attention", "NonCompliant", "Transition",
                                                     "Neutral", "Trusted",   "Good",         "Paused"};
constexpr std::array<std::string_view, 1> tags{"apilog"};
constexpr std::array<std::string_view, 3> popupTypes{"custom", "notification", "browser"};
constexpr std::array<std::string_view, 2> popupSubtypes{"wren_alert_browser", "wren_auth_browser"};
constexpr std::array<std::string_view, 1> severities{"info"};
constexpr std::array<std::string_view, 4> operations{"browse_for_cookie", "browse",
                                                     "browse_for_local_content", "dispatch_event"};
constexpr std::array<std::string_view, 20> eventKinds{
    "ENROLL_ACTION",
    "ENROLL_TOAST_ACTION",
    "ENROLL_CANCEL_ACTION",
    "UNENROLL_ACTION",
    "CONFIG_SYNC_ACTION",
    "ENROLLMENT_BROWSER_END_URL_REACHED",
    "ENROLLMENT_BROWSER_CLOSE",
    "ENROLLMENT_BROWSER_ERROR",
    "DATAPLANE_AUTH_BROWSER_END_URL_REACHED",
    "DATAPLANE_AUTH_BROWSER_CLOSE",
    "DATAPLANE_AUTH_BROWSER_ERROR",
    "ALERT_BROWSER_CLOSE",
    "ALERT_BROWSER_ERROR",
    "ERROR_DETAILS_ACTION",
    "ERROR_DETAILS_TOAST_ACTION",
    "AUTH_VERIFY_ACTION",
    "AUTH_VERIFY_TOAST_ACTION",
    "ERROR_POPUP_CLOSE",
    "LOCAL_BROWSE_EVENT",
    "EVENT_INVALID",
};

enum class Value {
    Any,
    Filled, ///< anything but nothing
    Count,  ///< decimal digits
    Word,   ///< one of the words
};

struct AttributeRule {
    std::string_view name;
    Value value = Value::Any;
    Words words = {};
    bool isRequired = false;
};
using Attributes = std::span<const AttributeRule>;

constexpr AttributeRule requiredId{"id", Value::Filled, {}, true};

constexpr std::array noticeAttributes{
    AttributeRule{"module"}, // looked at apart
    AttributeRule{"type", Value::Word, noticeTypes, true},
    AttributeRule{"tag", Value::Word, tags},
    AttributeRule{"timestamp", Value::Filled},
    AttributeRule{"state", Value::Word, trayStates},
};
constexpr std::array popupAttributes{
    AttributeRule{"timestamp", Value::Filled},          requiredId,
    AttributeRule{"type", Value::Word, popupTypes},     AttributeRule{"subtype", Value::Word, popupSubtypes},
    AttributeRule{"severity", Value::Word, severities}, AttributeRule{"show", Value::Word, flags},
    AttributeRule{"dispose", Value::Word, flags},       AttributeRule{"state", Value::Word, trayStates},
};
constexpr std::array labelAttributes{
    requiredId,
    AttributeRule{"value"},
    AttributeRule{"tooltip"},
    AttributeRule{"color", Value::Filled},
    AttributeRule{"hidden", Value::Word, flags},
    AttributeRule{"disabled", Value::Word, flags},
};
constexpr std::array buttonAttributes{
    requiredId,
    AttributeRule{"label", Value::Any, {}, true},
    AttributeRule{"tooltip"},
    AttributeRule{"hidden", Value::Word, flags},
    AttributeRule{"disabled", Value::Word, flags},
};
constexpr std::array browserAttributes{
    requiredId,
    AttributeRule{"operation", Value::Word, operations, true},
    AttributeRule{"start_url", Value::Filled},
    AttributeRule{"final_url", Value::Filled},
    AttributeRule{"cookie_name", Value::Filled},
    AttributeRule{"focus", Value::Word, flags},
    AttributeRule{"user_agent", Value::Filled},
    AttributeRule{"event_dispatch_name", Value::Filled},
    AttributeRule{"event_dispatch_detail", Value::Filled},
    AttributeRule{"disable_browser_controls", Value::Word, flags},
};
constexpr std::array trayAttributes{requiredId, AttributeRule{"value", Value::Any, {}, true}};
constexpr std::array closeAttributes{requiredId};
constexpr std::array listAttributes{
    requiredId,
    AttributeRule{"updaterows", Value::Word, flags, true},
    AttributeRule{"num_columns", Value::Count, {}, true},
};
/// Of the controls that no notice of this module needs.
constexpr std::array otherControlAttributes{
    requiredId,
    AttributeRule{"value"},
    AttributeRule{"label"},
    AttributeRule{"tooltip"},
    AttributeRule{"color", Value::Filled},
    AttributeRule{"hidden", Value::Word, flags},
    AttributeRule{"disabled", Value::Word, flags},
    AttributeRule{"focus", Value::Word, flags},
    AttributeRule{"editable"},
    AttributeRule{"selected"},
    AttributeRule{"maxlength"},
    AttributeRule{"checked"},
};
constexpr std::array idAttributes{requiredId};
constexpr std::array valueAttributes{AttributeRule{"value", Value::Any, {}, true}};
constexpr std::array columnAttributes{AttributeRule{"label", Value::Any, {}, true}};
constexpr std::array logAttributes{AttributeRule{"messagehistory", Value::Filled, {}, true}};
constexpr std::array windowAttributes{AttributeRule{"show", Value::Word, flags, true}};
constexpr std::array loggedEventAttributes{
    AttributeRule{"id", Value::Filled, {}, true},
    AttributeRule{"eventstore_id", Value::Word, eventKinds, true},
};

// Where an element can stand. A log notice is a place of its own.
constexpr std::string_view logNotice = "apilog";
constexpr std::array<std::string_view, 1> atTop{""};
constexpr std::array<std::string_view, 1> inNotice{"vtguiNotice"};
constexpr std::array<std::string_view, 3> whereControlsAre{"vtguiNotice", "popup", "row"};
constexpr std::array<std::string_view, 1> inPopup{"popup"};
constexpr std::array<std::string_view, 1> inLayout{"layout"};
constexpr std::array<std::string_view, 1> inList{"outlinelistbox"};
constexpr std::array<std::string_view, 1> inGroup{"listgroup"};
constexpr std::array<std::string_view, 2> inGroupOrRow{"listgroup", "listrow"};
constexpr std::array<std::string_view, 1> inLogNotice{logNotice};

struct ElementRule {
    std::string_view name;
    Words places;
    Attributes attributes;
    bool isControl = false; ///< and may bind events
};

constexpr std::array elements{
    ElementRule{"vtguiNotice", atTop, noticeAttributes},
    ElementRule{"popup", inNotice, popupAttributes},
    ElementRule{"label", whereControlsAre, labelAttributes, true},
    ElementRule{"button", whereControlsAre, buttonAttributes, true},
    ElementRule{"traystate", inNotice, trayAttributes, true},
    ElementRule{"closebutton", whereControlsAre, closeAttributes, true},
    ElementRule{"webbrowser", whereControlsAre, browserAttributes, true},
    ElementRule{"outlinelistbox", inNotice, listAttributes, true},
    ElementRule{"autosizebutton", whereControlsAre, otherControlAttributes, true},
    ElementRule{"checkbox", whereControlsAre, otherControlAttributes, true},
    ElementRule{"combobox", whereControlsAre, otherControlAttributes, true},
    ElementRule{"textbox", whereControlsAre, otherControlAttributes, true},
    ElementRule{"passwordbox", whereControlsAre, otherControlAttributes, true},
    ElementRule{"textarea", whereControlsAre, otherControlAttributes, true},
    ElementRule{"radiogroup", whereControlsAre, otherControlAttributes, true},
    ElementRule{"menuitem", whereControlsAre, otherControlAttributes, true},
    ElementRule{"progressmeter", whereControlsAre, otherControlAttributes, true},
    ElementRule{"listbox", whereControlsAre, otherControlAttributes, true},
    ElementRule{"timer", whereControlsAre, otherControlAttributes, true},
    ElementRule{"log", inNotice, logAttributes},
    ElementRule{"application", inNotice, windowAttributes},
    ElementRule{"title", inPopup, valueAttributes},
    ElementRule{"text", inPopup, valueAttributes},
    ElementRule{"layout", inPopup, {}},
    ElementRule{"row", inLayout, {}},
    ElementRule{"listgroup", inList, idAttributes},
    ElementRule{"listrow", inGroup, idAttributes},
    ElementRule{"listrowcolumn", inGroupOrRow, columnAttributes},
    ElementRule{"eventnotification", inLogNotice, loggedEventAttributes},
    ElementRule{"statusnotification", inLogNotice, {}},
    ElementRule{"enrollmentstatusnotification", inLogNotice, {}},
    ElementRule{"enrollmentauthrequest", inLogNotice, {}},
    ElementRule{"unenrollmentstatusnotification", inLogNotice, {}},
    ElementRule{"dataplanenotification", inLogNotice, {}},
};

constexpr std::array<std::string_view, 9> eventAttributes{"OnPress",      "OnSelect", "OnDoubleClick",
                                                          "OnPressEnter", "OnOK",     "OnCancel",
                                                          "OnClose",      "OnError",  "OnBrowseEvent"};

template <class Range>
bool holds(const Range& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Both the attribute of an event and the one of its parameter.
bool bindsOrQualifies(std::string_view name) {
    constexpr std::string_view parameterMark = "ID";
    return isEventAttribute(name) || (name.ends_with(parameterMark) &&
                                      isEventAttribute(name.substr(0, name.size() - parameterMark.size())));
}

bool canBe(const AttributeRule& rule, std::string_view value) {
    switch (rule.value) {
    case Value::Filled:
        return !value.empty();
    case Value::Count:
        return !value.empty() && std::all_of(value.begin(), value.end(),
                                             [](char digit) { return digit >= '0' && digit <= '9'; });
    case Value::Word:
        return holds(rule.words, value);
    case Value::Any:
        break;
    }
    return true;
}

/// The check of one notice.
class VocabularyCheck {
public:
    void check(const NoticeElement& element, std::string_view place) {
        const auto rule = std::find_if(elements.begin(), elements.end(), [&](const ElementRule& known) {
            return known.name == element.name && holds(known.places, place);
        });
        if (rule == elements.end()) {
            report(Rule::UnknownElement,
                   "<" + element.name + ">" +
                       (place.empty() ? std::string() : " in <" + std::string(place) + ">"));
            return; // whatever it holds is unknown with it
        }
        checkAttributes(element, *rule);
        const std::string_view within = place.empty() ? placeIn(element) : std::string_view(element.name);
        for (const NoticeElement& child : element.children) {
            check(child, within);
        }
    }

    std::vector<Violation> faults;

private:
    static std::string_view placeIn(const NoticeElement& notice) {
        return notice.attribute("type") == logNotice ? logNotice : std::string_view(notice.name);
    }

    void checkAttributes(const NoticeElement& element, const ElementRule& rule) {
        for (auto attribute = element.attributes.begin(); attribute != element.attributes.end();
             ++attribute) {
            const bool isFirst = std::none_of(element.attributes.begin(), attribute, [&](const auto& other) {
                return other.first == attribute->first;
            });
            if (!isFirst) {
                report(Rule::UnknownAttribute, "\"" + attribute->first + "\" twice" + of(element));
            } else {
                checkAttribute(element, rule, attribute->first, attribute->second);
            }
        }
        for (const AttributeRule& known : rule.attributes) {
            if (known.isRequired && !element.has(known.name)) {
                report(Rule::MissingAttribute, "\"" + std::string(known.name) + "\"" + of(element));
            }
        }
    }

    void checkAttribute(const NoticeElement& element, const ElementRule& rule, const std::string& name,
                        const std::string& value) {
        const auto known =
            std::find_if(rule.attributes.begin(), rule.attributes.end(),
                         [&](const AttributeRule& attribute) { return attribute.name == name; });
        const bool isEvent = known == rule.attributes.end() && rule.isControl && bindsOrQualifies(name);
        if (known == rule.attributes.end() && !isEvent) {
            report(Rule::UnknownAttribute, "\"" + name + "\"" + of(element));
        } else if (isEvent ? value.empty() : !canBe(*known, value)) {
            report(Rule::BadValue, "\"" + name + "\" = \"" + value + "\"" + of(element));
        }
    }

    static std::string of(const NoticeElement& element) {
        const std::string_view id = element.attribute("id");
        return " of <" + element.name + ">" + (id.empty() ? std::string() : " " + std::string(id));
    }

    void report(Rule rule, std::string text) { faults.push_back({rule, std::move(text)}); }
};

} // namespace

bool isEventAttribute(std::string_view name) { return holds(eventAttributes, name); }

std::vector<Violation> vocabularyFaults(const NoticeElement& notice) {
    VocabularyCheck check;
    if (notice.attribute("module") != moduleName) {
        check.faults.push_back(
            {Rule::ForeignModule, "\"module\" = \"" + std::string(notice.attribute("module")) + "\""});
    }
    check.check(notice, "");
    return std::move(check.faults);
}

} // namespace host
