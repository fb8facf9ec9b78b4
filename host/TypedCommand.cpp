#include "host/TypedCommand.h"

#include "host/Text.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

using Popup = const ScreenPopup*;

constexpr const char* help = "enroll            press Enroll on the tile\n"
                             "cancel            press Cancel on the tile\n"
                             "details           press Details on the tile\n"
                             "verify            press Verify on the tile\n"
                             "unenroll          press Unenroll in the advanced window\n"
                             "sync              press Sync now in the advanced window\n"
                             "cookie VALUE      the open login ends with that cookie\n"
                             "alert TYPE VALUE  the open alert page sends that event\n"
                             "close             close the dialog or browser in front\n"
                             "service JSON      change the service, as in {\"certificate\":\"revoked\"}\n"
                             "help              this list\n"
                             "quit              stop and leave\n";

struct ButtonCommand {
    std::string_view word;
    std::string_view control;
};

constexpr std::array<ButtonCommand, 6> buttonCommands{{
    {"enroll", "quill_tile_enroll_action_btn"},
    {"cancel", "quill_tile_cancel_action_btn"},
    {"details", "quill_tile_details_action_btn"},
    {"verify", "quill_tile_verify_action_btn"},
    {"unenroll", "quill_adv_unenroll_btn"},
    {"sync", "quill_config_sync_btn"},
}};

TypedReply answer(std::string text) { return {{}, std::move(text), {}, false}; }

TypedReply send(std::string_view eventId, std::string_view child = {}) {
    return {"<vtguiEvent id=\"" + xmlEscaped(eventId) + "\">" + std::string(child) + "</vtguiEvent>",
            {},
            {},
            false};
}

/// Takes the next word off the line.
std::string_view nextWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
    line.remove_prefix(word.size());
    return word;
}

/// What is left of the line, without the blanks around it.
std::string_view restOf(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

TypedReply press(const ScreenModel& screen, const ButtonCommand& command) {
    for (const ScreenPart& part : screen.parts()) {
        const ScreenControl* control = part.find(command.control);
        if (control != nullptr && !control->isHidden() && !control->isDisabled() &&
            !control->attribute("OnPress").empty()) {
            return send(control->attribute("OnPress"));
        }
    }
    return answer("There is no such button to press now: " + std::string(command.word) + "\n");
}

/// The browser of the popup in front that has the event attribute.
const ScreenControl* browserWith(std::string_view event, const ScreenModel& screen,
                                 const std::vector<std::string>& openPopups) {
    for (auto id = openPopups.rbegin(); id != openPopups.rend(); ++id) {
        const auto popup = screen.popups().find(*id);
        if (popup == screen.popups().end()) {
            continue;
        }
        for (const ScreenControl& control : popup->second.controls) {
            if (control.element == "webbrowser" && !control.attribute(event).empty()) {
                return &control;
            }
        }
    }
    return nullptr;
}

/// The report of a browser: its event, with the browser and its attributes along.
TypedReply report(const ScreenControl& browser, std::string_view event, const std::string& attributes) {
    return send(browser.attribute(event),
                "<webbrowser id=\"" + xmlEscaped(browser.id()) + "\"" + attributes + "/>");
}

TypedReply giveCookie(std::string_view value, const ScreenModel& screen,
                      const std::vector<std::string>& open) {
    const ScreenControl* browser = browserWith("OnPress", screen, open);
    return browser == nullptr ? answer("No login is open.\n")
                              : report(*browser, "OnPress", " value=\"" + xmlEscaped(value) + "\"");
}

TypedReply sendPageEvent(std::string_view line, const ScreenModel& screen,
                         const std::vector<std::string>& open) {
    const std::string_view type = nextWord(line);
    const ScreenControl* browser = browserWith("OnBrowseEvent", screen, open);
    if (browser == nullptr) {
        return answer("No alert page is open.\n");
    }
    if (type.empty()) {
        return answer("alert takes a type: posture-update, dataplane-auth or re-enroll, and a value.\n");
    }
    return report(*browser, "OnBrowseEvent",
                  " type=\"" + xmlEscaped(type) + "\" value=\"" + xmlEscaped(restOf(line)) + "\"");
}

TypedReply close(const ScreenModel& screen, const std::vector<std::string>& openPopups) {
    for (auto id = openPopups.rbegin(); id != openPopups.rend(); ++id) {
        const auto popup = screen.popups().find(*id);
        if (popup == screen.popups().end()) {
            continue;
        }
        for (const ScreenControl& control : popup->second.controls) {
            if (!control.attribute("OnClose").empty()) {
                return send(control.attribute("OnClose"));
            }
        }
    }
    return answer("Nothing is open that could be closed.\n");
}

} // namespace

TypedReply replyTo(std::string_view line, const ScreenModel& screen,
                   const std::vector<std::string>& openPopups) {
    const std::string_view word = nextWord(line);
    if (word.empty()) {
        return {};
    }
    for (const ButtonCommand& command : buttonCommands) {
        if (command.word == word) {
            return press(screen, command);
        }
    }
    if (word == "cookie") {
        return giveCookie(restOf(line), screen, openPopups);
    }
    if (word == "alert") {
        return sendPageEvent(line, screen, openPopups);
    }
    if (word == "close") {
        return close(screen, openPopups);
    }
    if (word == "service") {
        return {{}, {}, std::string(restOf(line)), false};
    }
    if (word == "quit") {
        return {{}, {}, {}, true};
    }
    if (word == "help") {
        return answer(help);
    }
    return answer("Unknown command: " + printable(word) + "; help lists them.\n");
}

} // namespace host
