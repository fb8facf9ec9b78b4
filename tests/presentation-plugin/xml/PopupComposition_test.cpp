#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "presentation-plugin/xml/ErrorPopupComposition.h"
#include "presentation-plugin/xml/ToastComposition.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* popupRoot =
    "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"popup\">\n";

std::string toast(ToastButton button, CEventStore& events) {
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composeToast(notice, "Title", "Text", button, events);
    return test::maskTimestamps(notice.serialize());
}

std::string toastWithButton(const std::string& id, const std::string& label) {
    const std::string button =
        id.empty() ? ""
                   : "\t\t<button id=\"" + id + "\" label=\"" + label + "\" tooltip=\"" + label +
                         "\" hidden=\"false\" disabled=\"false\" OnPress=\"" + id + "_OnPress\"/>\n";
    return popupRoot +
           std::string(
               "\t<popup timestamp=\"*\" id=\"wren_toast_popup\" type=\"notification\" severity=\"info\">\n"
               "\t\t<title value=\"Title\"/>\n"
               "\t\t<text value=\"Text\"/>\n") +
           button + "\t</popup>\n</vtguiNotice>\n";
}

TEST(ToastComposition, EachButtonHasItsIdTextAndEvent) {
    CEventStore events;
    EXPECT_EQ(toast(ToastButton::Enroll, events), toastWithButton("quill_toast_enroll_action_btn", "Enroll"));
    EXPECT_EQ(events.Lookup("quill_toast_enroll_action_btn_OnPress"), EventStoreId::ENROLL_TOAST_ACTION);
    EXPECT_EQ(toast(ToastButton::Verify, events),
              toastWithButton("quill_tile_verify_action_toast_btn", "Verify"));
    EXPECT_EQ(events.Lookup("quill_tile_verify_action_toast_btn_OnPress"),
              EventStoreId::AUTH_VERIFY_TOAST_ACTION);
    EXPECT_EQ(toast(ToastButton::Details, events),
              toastWithButton("quill_tile_details_action_toast_btn", "See Details"));
    EXPECT_EQ(events.Lookup("quill_tile_details_action_toast_btn_OnPress"),
              EventStoreId::ERROR_DETAILS_TOAST_ACTION);
}

TEST(ToastComposition, ButtonsOutliveTheirToast) {
    CEventStore events;
    toast(ToastButton::Enroll, events);
    events.Remove("wren_toast_popup");
    EXPECT_EQ(events.Lookup("quill_toast_enroll_action_btn_OnPress"), EventStoreId::ENROLL_TOAST_ACTION);
}

TEST(ToastComposition, MayHaveNoButton) {
    CEventStore events;
    EXPECT_EQ(toast(ToastButton::None, events), toastWithButton("", ""));
}

TEST(ErrorPopupComposition, IsADialogWithHeaderDetailsAndTwoWaysToClose) {
    CEventStore events;
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composeErrorPopup(notice, "Internal Error", "Contact \"IT\".", events);
    EXPECT_EQ(test::maskTimestamps(notice.serialize()),
              std::string(popupRoot) +
                  "\t<popup timestamp=\"*\" id=\"wren_client_error_dialog\" type=\"custom\">\n"
                  "\t\t<title value=\"Norvane Kestrel Suite\"/>\n"
                  "\t\t<closebutton id=\"wren_client_error_gen_close_btn\" "
                  "OnClose=\"wren_client_error_gen_close_btn_OnClose\"/>\n"
                  "\t\t<layout>\n"
                  "\t\t\t<row>\n"
                  "\t\t\t\t<label id=\"wren_client_error_message_header_label\" value=\"Internal Error\"/>\n"
                  "\t\t\t</row>\n"
                  "\t\t\t<row>\n"
                  "\t\t\t\t<label id=\"wren_client_error_message_details_label\" value='Contact \"IT\".'/>\n"
                  "\t\t\t</row>\n"
                  "\t\t\t<row>\n"
                  "\t\t\t\t<button id=\"wren_client_error_close_btn\" label=\"Close\" "
                  "OnPress=\"wren_client_error_close_btn_OnPress\"/>\n"
                  "\t\t\t</row>\n"
                  "\t\t</layout>\n"
                  "\t</popup>\n"
                  "</vtguiNotice>\n");
    EXPECT_EQ(events.Lookup("wren_client_error_gen_close_btn_OnClose"), EventStoreId::ERROR_POPUP_CLOSE);
    EXPECT_EQ(events.Lookup("wren_client_error_close_btn_OnPress"), EventStoreId::ERROR_POPUP_CLOSE);
    events.Remove("wren_client_error_dialog");
    EXPECT_EQ(events.Lookup("wren_client_error_close_btn_OnPress"), EventStoreId::EVENT_INVALID);
}

TEST(ErrorPopupComposition, DisposalNamesThePopup) {
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composePopupDisposal(notice, "some_dialog");
    EXPECT_EQ(test::maskTimestamps(notice.serialize()),
              std::string(popupRoot) +
                  "\t<popup timestamp=\"*\" id=\"some_dialog\" dispose=\"true\"/>\n</vtguiNotice>\n");
}

} // namespace
