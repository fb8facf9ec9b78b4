#include "host/validate/ScreenLine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string lineOf(const std::string& type, const std::string& content) {
    return host::validate::screenLine(
        host::parseNotice("<vtguiNotice type=\"" + type + "\" state=\"Good\">" + content + "</vtguiNotice>"));
}

TEST(ScreenLine, ATileTellsItsTextsAndTheButtonsThatShow) {
    EXPECT_EQ(lineOf("update",
                     "<label id=\"simple_status\" value=\"Text\"/>"
                     "<button id=\"quill_tile_enroll_action_btn\" hidden=\"false\" disabled=\"true\"/>"
                     "<button id=\"quill_tile_cancel_action_btn\" hidden=\"true\" disabled=\"false\"/>"
                     "<button id=\"quill_tile_verify_action_btn\" hidden=\"false\" disabled=\"false\"/>"
                     "<traystate id=\"tray_state_string\" value=\"Tray\"/>"),
              "tile update Good \"Text\" \"Tray\" [Enroll- Verify]");
    EXPECT_EQ(lineOf("setup", "<label id=\"simple_status\"/>"), "tile setup Good \"\" \"\" []");
}

TEST(ScreenLine, PanelsTellWhetherTheirButtonsAreEnabled) {
    EXPECT_EQ(lineOf("setup", "<button id=\"quill_adv_unenroll_btn\" disabled=\"true\"/>"
                              "<label id=\"quill_adv_unenroll_managed_label\" hidden=\"false\"/>"),
              "adv-enrollment setup disabled managed");
    EXPECT_EQ(lineOf("update", "<label id=\"quill_config_sync_last_sync_label\" value=\"None\"/>"
                               "<button id=\"quill_config_sync_btn\" disabled=\"false\"/>"),
              "adv-sync update enabled \"None\"");
}

TEST(ScreenLine, PopupsTellWhatTheyAre) {
    EXPECT_EQ(lineOf("popup", "<popup id=\"a\" dispose=\"true\"/>"), "dispose a");
    EXPECT_EQ(lineOf("popup", "<popup id=\"a\" type=\"browser\"><webbrowser operation=\"browse\"/></popup>"),
              "popup a browse");
    EXPECT_EQ(lineOf("popup", "<popup id=\"a\" type=\"custom\"/>"), "popup a");
    EXPECT_EQ(lineOf("popup", "<popup type=\"notification\"><title value=\"T\"/><text value=\"X\"/>"
                              "<button id=\"b\"/></popup>"),
              "toast \"T\" \"X\" b");
    EXPECT_EQ(lineOf("popup", "<popup type=\"notification\"/>"), "toast \"\" \"\"");
    EXPECT_EQ(lineOf("popup", ""), "popup");
}

TEST(ScreenLine, OtherNoticesTellTheirPart) {
    EXPECT_EQ(lineOf("apilog", "<statusnotification>{}</statusnotification>"), "apilog statusnotification");
    EXPECT_EQ(lineOf("apilog", ""), "apilog ");
    EXPECT_EQ(lineOf("update", "<outlinelistbox id=\"stat_outlinelistbox\"/>"), "stats-details update");
    EXPECT_EQ(lineOf("setup", "<outlinelistbox id=\"overview_stat_outlinelistbox\"/>"),
              "stats-overview setup");
    EXPECT_EQ(lineOf("update", "<application show=\"false\"/>"), "hide-window");
    EXPECT_EQ(lineOf("update", "<log messagehistory=\"Line\"/>"), "history Line");
    EXPECT_EQ(lineOf("update", ""), "history ");
}

} // namespace
