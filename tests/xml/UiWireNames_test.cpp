#include "xml/UiWireNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(UiWireNames, TableHoldsAll162Rows) {
    const std::vector<std::string> expected{
        // clang-format off
        "vtguiNotice", "vtguiEvent", "type", "subtype", "state", "tag", "module", "id", "value",
        "disabled", "hidden", "label", "tooltip", "focus", "timestamp", "color", "severity",
        "dispose", "show", "popup", "title", "row", "layout", "listrow", "listrowcolumn",
        "listgroup", "application", "text", "log", "num_columns", "updaterows",
        "messagehistory", "custom", "notification", "browser", "wren_alert_browser",
        "wren_auth_browser", "info", "start_url", "final_url", "cookie_name", "operation",
        "error", "user_agent", "disable_browser_controls", "event_dispatch_name",
        "event_dispatch_detail", "browse_for_cookie", "browse", "browse_for_local_content",
        "dispatch_event",
        "OnPress", "OnPressID", "OnSelect", "OnSelectID", "OnDoubleClick", "OnDoubleClickID",
        "OnPressEnter", "OnPressEnterID", "OnOK", "OnOKID", "OnCancel", "OnCancelID", "OnClose",
        "OnCloseID", "OnError", "OnErrorID", "OnBrowseEvent", "OnBrowseEventID",
        "editable", "selected", "maxlength", "checked", "class", "audible", "sensitive",
        "style", "bold", "server", "certErrors", "allowImport", "url", "banner", "custom_modal",
        "message", "file", "certBlocked", "certWarning", "remediation", "rem_saveas",
        "rem_path_launch", "aup_popup_type", "url_launch", "browser_plugin", "open_file_dialog",
        "scanning", "preferences", "comboitem", "listrows", "selected_row", "listhead",
        "listheader", "listitem", "radio", "defaultFileName", "fileDistPath", "pref-indent",
        "group_list", "hyperlink", "progressmeter", "progressupper", "progressvalue",
        "minimize", "attention", "disableQuit", "showpreferences", "accessibility",
        "positionrelativeto", "system", "exitcode", "cp_target_url", "error_cookie_name",
        "operation_timeout", "is_external", "disable_system_proxy",
        "client_cert_req_ignored_fqdns", "events_to_capture", "unknown", "errorclientcert",
        "badservercert", "navigating", "getting_cookie", "timeout", "aborted", "error",
        "warning", "good", "warning", "error", "busy", "none", "paused", "step", "one_active",
        "one_inactive", "two_active", "two_inactive", "the_active", "three_inactive",
        "four_active", "four_inactive", "five_active", "five_inactive", "six_active",
        "six_inactive", "seven_active", "seven_inactive", "eight_active", "eight_inactive",
        "nine_active", "nine_active", "none"
        // clang-format on
    };
    ASSERT_EQ(expected.size(), 162u);
    EXPECT_EQ(std::vector<std::string>(wire::wireNames.begin(), wire::wireNames.end()), expected);
}

TEST(UiWireNames, BooleansAreWords) {
    EXPECT_STREQ(wireBool(true), "true");
    EXPECT_STREQ(wireBool(false), "false");
}

} // namespace
