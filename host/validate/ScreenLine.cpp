#include "host/validate/ScreenLine.h"

#include "host/validate/Expect.h"

#include <array>

namespace host::validate {
namespace {

struct TileButton {
    std::string_view id;
    std::string_view name;
};
constexpr std::array tileButtons{
    TileButton{"quill_tile_enroll_action_btn", "Enroll"},
    TileButton{"quill_tile_cancel_action_btn", "Cancel"},
    TileButton{"quill_tile_details_action_btn", "Details"},
    TileButton{"quill_tile_verify_action_btn", "Verify"},
};

std::string_view valueOf(const NoticeElement& notice, std::string_view id) {
    const NoticeElement* element = findById(notice, id);
    return element != nullptr ? element->attribute("value") : std::string_view();
}

std::string tileLine(const NoticeElement& notice) {
    std::string buttons;
    for (const TileButton& button : tileButtons) {
        const NoticeElement* element = findById(notice, button.id);
        if (element != nullptr && element->attribute("hidden") == "false") {
            buttons += buttons.empty() ? "" : " ";
            buttons += button.name;
            buttons += element->attribute("disabled") == "true" ? "-" : "";
        }
    }
    return joined({"tile ", notice.attribute("type"), " ", notice.attribute("state"), " \"",
                   valueOf(notice, "simple_status"), "\" \"", valueOf(notice, "tray_state_string"), "\" [",
                   buttons, "]"});
}

std::string_view stateOf(const NoticeElement& button) {
    return button.attribute("disabled") == "true" ? "disabled" : "enabled";
}

std::string enrollmentLine(const NoticeElement& notice, const NoticeElement& button) {
    const NoticeElement* managed = findById(notice, "quill_adv_unenroll_managed_label");
    const bool isManaged = managed != nullptr && managed->attribute("hidden") == "false";
    return joined(
        {"adv-enrollment ", notice.attribute("type"), " ", stateOf(button), isManaged ? " managed" : ""});
}

std::string syncLine(const NoticeElement& notice, const NoticeElement& button) {
    return joined({"adv-sync ", notice.attribute("type"), " ", stateOf(button), " \"",
                   valueOf(notice, "quill_config_sync_last_sync_label"), "\""});
}

std::string popupLine(const NoticeElement& popup) {
    const std::string_view id = popup.attribute("id");
    if (popup.attribute("dispose") == "true") {
        return joined({"dispose ", id});
    }
    if (popup.attribute("type") == "notification") {
        const NoticeElement* title = popup.child("title");
        const NoticeElement* text = popup.child("text");
        const NoticeElement* button = popup.child("button");
        return joined({"toast \"", title != nullptr ? title->attribute("value") : "", "\" \"",
                       text != nullptr ? text->attribute("value") : "", "\"", button != nullptr ? " " : "",
                       button != nullptr ? button->attribute("id") : ""});
    }
    const NoticeElement* browser = popup.child("webbrowser");
    return joined({"popup ", id, browser != nullptr ? " " : "",
                   browser != nullptr ? browser->attribute("operation") : ""});
}

} // namespace

const NoticeElement* findById(const NoticeElement& element, std::string_view id) {
    for (const NoticeElement& child : element.children) {
        if (child.attribute("id") == id) {
            return &child;
        }
        if (const NoticeElement* found = findById(child, id)) {
            return found;
        }
    }
    return nullptr;
}

std::string screenLine(const NoticeElement& notice) {
    const std::string_view type = notice.attribute("type");
    if (type == "apilog") {
        return joined({"apilog ", notice.children.empty() ? "" : notice.children.front().name});
    }
    if (type == "popup") {
        const NoticeElement* popup = notice.child("popup");
        return popup != nullptr ? popupLine(*popup) : "popup";
    }
    if (findById(notice, "simple_status") != nullptr) {
        return tileLine(notice);
    }
    if (const NoticeElement* button = findById(notice, "quill_adv_unenroll_btn")) {
        return enrollmentLine(notice, *button);
    }
    if (const NoticeElement* button = findById(notice, "quill_config_sync_btn")) {
        return syncLine(notice, *button);
    }
    if (findById(notice, "overview_stat_outlinelistbox") != nullptr) {
        return joined({"stats-overview ", type});
    }
    if (findById(notice, "stat_outlinelistbox") != nullptr) {
        return joined({"stats-details ", type});
    }
    if (notice.child("application") != nullptr) {
        return "hide-window";
    }
    const NoticeElement* log = notice.child("log");
    return joined({"history ", log != nullptr ? log->attribute("messagehistory") : ""});
}

} // namespace host::validate
