/// Names and values of the UI protocol as they travel: one constant for each that this plugin writes or
/// reads, and the whole table that the host and its plugins share.
#pragma once

#include <array>

namespace wire {

// Documents.
inline constexpr const char* vtguiNotice = "vtguiNotice";
inline constexpr const char* vtguiEvent = "vtguiEvent";

// Attributes of the root and of controls.
inline constexpr const char* type = "type";
inline constexpr const char* subtype = "subtype";
inline constexpr const char* state = "state";
inline constexpr const char* tag = "tag";
inline constexpr const char* module = "module";
inline constexpr const char* id = "id";
inline constexpr const char* value = "value";
inline constexpr const char* disabled = "disabled";
inline constexpr const char* hidden = "hidden";
inline constexpr const char* label = "label";
inline constexpr const char* tooltip = "tooltip";
inline constexpr const char* focus = "focus";
inline constexpr const char* timestamp = "timestamp";
inline constexpr const char* color = "color";
inline constexpr const char* severity = "severity";
inline constexpr const char* dispose = "dispose";
inline constexpr const char* show = "show";

// Elements.
inline constexpr const char* popup = "popup";
inline constexpr const char* title = "title";
inline constexpr const char* row = "row";
inline constexpr const char* layout = "layout";
inline constexpr const char* listrow = "listrow";
inline constexpr const char* listrowcolumn = "listrowcolumn";
inline constexpr const char* listgroup = "listgroup";
inline constexpr const char* application = "application";
inline constexpr const char* text = "text";
inline constexpr const char* log = "log";

// Attributes of list controls.
inline constexpr const char* num_columns = "num_columns";
inline constexpr const char* updaterows = "updaterows";

// Attribute of `log`.
inline constexpr const char* messagehistory = "messagehistory";

// Values of a popup's "type".
inline constexpr const char* custom = "custom";
inline constexpr const char* notification = "notification";
inline constexpr const char* browser = "browser";

// Values of a browser popup's "subtype".
inline constexpr const char* wren_alert_browser = "wren_alert_browser";
inline constexpr const char* wren_auth_browser = "wren_auth_browser";

// Value of "severity".
inline constexpr const char* info = "info";

// Browser attributes.
inline constexpr const char* start_url = "start_url";
inline constexpr const char* final_url = "final_url";
inline constexpr const char* cookie_name = "cookie_name";
inline constexpr const char* operation = "operation";
inline constexpr const char* error = "error";
inline constexpr const char* user_agent = "user_agent";
inline constexpr const char* disable_browser_controls = "disable_browser_controls";
inline constexpr const char* event_dispatch_name = "event_dispatch_name";
inline constexpr const char* event_dispatch_detail = "event_dispatch_detail";

// Values of "operation".
inline constexpr const char* browse_for_cookie = "browse_for_cookie";
inline constexpr const char* browse = "browse";
inline constexpr const char* browse_for_local_content = "browse_for_local_content";
inline constexpr const char* dispatch_event = "dispatch_event";

// Event attributes of controls, each with the attribute of its parameter.
inline constexpr const char* OnPress = "OnPress";
inline constexpr const char* OnPressID = "OnPressID";
inline constexpr const char* OnSelect = "OnSelect";
inline constexpr const char* OnSelectID = "OnSelectID";
inline constexpr const char* OnDoubleClick = "OnDoubleClick";
inline constexpr const char* OnDoubleClickID = "OnDoubleClickID";
inline constexpr const char* OnPressEnter = "OnPressEnter";
inline constexpr const char* OnPressEnterID = "OnPressEnterID";
inline constexpr const char* OnOK = "OnOK";
inline constexpr const char* OnOKID = "OnOKID";
inline constexpr const char* OnCancel = "OnCancel";
inline constexpr const char* OnCancelID = "OnCancelID";
inline constexpr const char* OnClose = "OnClose";
inline constexpr const char* OnCloseID = "OnCloseID";
inline constexpr const char* OnError = "OnError";
inline constexpr const char* OnErrorID = "OnErrorID";
inline constexpr const char* OnBrowseEvent = "OnBrowseEvent";
inline constexpr const char* OnBrowseEventID = "OnBrowseEventID";

/// The shared table: the names above, then those that the host's other plugins use. It is kept whole, with
/// its repetitions and its two odd rows ("the_active", and "nine_active" twice), since it is not ours to
/// mend.
inline constexpr std::array<const char*, 162> wireNames{
    // clang-format off
    vtguiNotice, vtguiEvent, type, subtype, state, tag, module, id, value, disabled, hidden, label,
    tooltip, focus, timestamp, color, severity, dispose, show, popup, title, row, layout, listrow,
    listrowcolumn, listgroup, application, text, log, num_columns, updaterows, messagehistory,
    custom, notification, browser, wren_alert_browser, wren_auth_browser, info, start_url,
    final_url, cookie_name, operation, error, user_agent, disable_browser_controls,
    event_dispatch_name, event_dispatch_detail, browse_for_cookie, browse, browse_for_local_content,
    dispatch_event,
    OnPress, OnPressID, OnSelect, OnSelectID, OnDoubleClick, OnDoubleClickID, OnPressEnter,
    OnPressEnterID, OnOK, OnOKID, OnCancel, OnCancelID, OnClose, OnCloseID, OnError, OnErrorID,
    OnBrowseEvent, OnBrowseEventID,
    "editable", "selected", "maxlength", "checked", "class", "audible", "sensitive", "style",
    "bold", "server", "certErrors", "allowImport", "url", "banner", "custom_modal", "message",
    "file", "certBlocked", "certWarning", "remediation", "rem_saveas", "rem_path_launch",
    "aup_popup_type", "url_launch", "browser_plugin", "open_file_dialog", "scanning", "preferences",
    "comboitem", "listrows", "selected_row", "listhead", "listheader", "listitem", "radio",
    "defaultFileName", "fileDistPath", "pref-indent", "group_list", "hyperlink", "progressmeter",
    "progressupper", "progressvalue", "minimize", "attention", "disableQuit", "showpreferences",
    "accessibility", "positionrelativeto", "system", "exitcode", "cp_target_url",
    "error_cookie_name", "operation_timeout", "is_external", "disable_system_proxy",
    "client_cert_req_ignored_fqdns", "events_to_capture", "unknown", "errorclientcert",
    "badservercert", "navigating", "getting_cookie", "timeout", "aborted", "error", "warning",
    "good", "warning", "error", "busy", "none", "paused", "step", "one_active", "one_inactive",
    "two_active", "two_inactive", "the_active", "three_inactive", "four_active", "four_inactive",
    "five_active", "five_inactive", "six_active", "six_inactive", "seven_active", "seven_inactive",
    "eight_active", "eight_inactive", "nine_active", "nine_active", "none",
    // clang-format on
};
static_assert(wireNames.back(), "every row is filled");

} // namespace wire

/// A boolean as it travels.
constexpr const char* wireBool(bool value) noexcept { return value ? "true" : "false"; }
