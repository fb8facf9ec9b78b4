#include "presentation-plugin/xml/TileComposition.h"

#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

namespace {

std::string composed(UiNoticeType type, const TileContent& content, bool tellHistory, CEventStore& events) {
    XmlUINotice notice(type, nullptr, pluginIdentity::identity);
    composeTile(notice, content, tellHistory, events);
    return test::maskTimestamps(notice.serialize());
}

TEST(TileComposition, SetupBindsTheFourButtons) {
    CEventStore events;
    const TileContent content{.status = "Initializing. Please wait...",
                              .trayText = "Initializing. Please wait...",
                              .trayState = UiTrayState::Transition};
    EXPECT_EQ(
        composed(UiNoticeType::Setup, content, true, events),
        "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"setup\" timestamp=\"*\" "
        "state=\"Transition\">\n"
        "\t<label id=\"simple_tile_label\" value=\"Wren Gate\" tooltip=\"Navigate to WREN Advanced Window\" "
        "color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
        "\t<label id=\"simple_status\" value=\"Initializing. Please wait...\" tooltip=\"\" color=\"black\" "
        "hidden=\"false\" disabled=\"false\"/>\n"
        "\t<log messagehistory=\"Initializing. Please wait...\"/>\n"
        "\t<button id=\"quill_tile_enroll_action_btn\" label=\"Enroll\" tooltip=\"Enroll\" hidden=\"true\" "
        "disabled=\"true\" OnPress=\"quill_tile_enroll_action_btn_OnPress\"/>\n"
        "\t<button id=\"quill_tile_cancel_action_btn\" label=\"Cancel\" tooltip=\"Cancel\" hidden=\"true\" "
        "disabled=\"true\" OnPress=\"quill_tile_cancel_action_btn_OnPress\"/>\n"
        "\t<button id=\"quill_tile_details_action_btn\" label=\"Details\" tooltip=\"Details\" "
        "hidden=\"true\" "
        "disabled=\"true\" OnPress=\"quill_tile_details_action_btn_OnPress\"/>\n"
        "\t<button id=\"quill_tile_verify_action_btn\" label=\"Verify\" tooltip=\"Verify\" hidden=\"true\" "
        "disabled=\"true\" OnPress=\"quill_tile_verify_action_btn_OnPress\"/>\n"
        "\t<traystate id=\"tray_state_string\" value=\"Initializing. Please wait...\"/>\n"
        "</vtguiNotice>\n");
    EXPECT_EQ(events.Lookup("quill_tile_enroll_action_btn_OnPress"), EventStoreId::ENROLL_ACTION);
    EXPECT_EQ(events.Lookup("quill_tile_cancel_action_btn_OnPress"), EventStoreId::ENROLL_CANCEL_ACTION);
    EXPECT_EQ(events.Lookup("quill_tile_details_action_btn_OnPress"), EventStoreId::ERROR_DETAILS_ACTION);
    EXPECT_EQ(events.Lookup("quill_tile_verify_action_btn_OnPress"), EventStoreId::AUTH_VERIFY_ACTION);
}

TEST(TileComposition, UpdateNamesTheSameControlsAndBindsNothing) {
    CEventStore events;
    const TileContent content{.status = "Verify your identity.",
                              .trayText = "Verify",
                              .trayState = UiTrayState::Attention,
                              .enroll = {false, true},
                              .cancel = {true, false},
                              .verify = offeredButton};
    EXPECT_EQ(
        composed(UiNoticeType::Update, content, false, events),
        "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"update\" timestamp=\"*\" "
        "state=\"Attention\">\n"
        "\t<label id=\"simple_tile_label\" value=\"Wren Gate\" tooltip=\"Navigate to WREN Advanced Window\" "
        "color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
        "\t<label id=\"simple_status\" value=\"Verify your identity.\" tooltip=\"\" color=\"black\" "
        "hidden=\"false\" disabled=\"false\"/>\n"
        "\t<button id=\"quill_tile_enroll_action_btn\" label=\"Enroll\" tooltip=\"Enroll\" hidden=\"false\" "
        "disabled=\"true\"/>\n"
        "\t<button id=\"quill_tile_cancel_action_btn\" label=\"Cancel\" tooltip=\"Cancel\" hidden=\"true\" "
        "disabled=\"false\"/>\n"
        "\t<button id=\"quill_tile_details_action_btn\" label=\"Details\" tooltip=\"Details\" "
        "hidden=\"true\" "
        "disabled=\"true\"/>\n"
        "\t<button id=\"quill_tile_verify_action_btn\" label=\"Verify\" tooltip=\"Verify\" hidden=\"false\" "
        "disabled=\"false\"/>\n"
        "\t<traystate id=\"tray_state_string\" value=\"Verify\"/>\n"
        "</vtguiNotice>\n");
    EXPECT_EQ(events.Lookup("quill_tile_enroll_action_btn_OnPress"), EventStoreId::EVENT_INVALID);
}

TEST(TileComposition, AnEmptyStatusLineIsHidden) {
    CEventStore events;
    const std::string text = composed(UiNoticeType::Update, {}, false, events);
    EXPECT_NE(text.find("<label id=\"simple_status\" value=\"\" tooltip=\"\" color=\"black\" hidden=\"true\" "
                        "disabled=\"false\"/>"),
              std::string::npos);
}

TEST(TileComposition, VisibleTextHoldsMoreThanWhiteSpace) {
    EXPECT_FALSE(hasVisibleText(""));
    EXPECT_FALSE(hasVisibleText(" \t\n\v\f\r"));
    EXPECT_TRUE(hasVisibleText(" . "));
    EXPECT_TRUE(hasVisibleText("\xc3\xa4"));
}

} // namespace
