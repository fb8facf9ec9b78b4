#include "host/TypedCommand.h"

#include <gtest/gtest.h>

namespace {

class TypedCommand : public ::testing::Test {
protected:
    host::TypedReply type(std::string_view line) { return host::replyTo(line, screen, open); }

    void showTile(const std::string& hidden, const std::string& disabled) {
        screen.apply("<vtguiNotice type=\"setup\"><label id=\"simple_status\" value=\"x\"/>"
                     "<button id=\"quill_tile_enroll_action_btn\" label=\"Enroll\" hidden=\"" +
                     hidden + "\" disabled=\"" + disabled +
                     "\" OnPress=\"quill_tile_enroll_action_btn_OnPress\"/></vtguiNotice>");
    }
    void openBrowser(const std::string& id, const std::string& attributes) {
        screen.apply("<vtguiNotice type=\"popup\"><popup id=\"" + id +
                     "\" type=\"browser\" show=\"true\"><title value=\"t\"/><webbrowser id=\"" + id +
                     "_web\" " + attributes + "/><closebutton id=\"" + id + "_close\" OnClose=\"" + id +
                     "_close_OnClose\"/></popup></vtguiNotice>");
        open.push_back(id);
    }

    host::ScreenModel screen;
    std::vector<std::string> open;
};

TEST_F(TypedCommand, PressesAButtonThatIsOffered) {
    showTile("false", "false");
    EXPECT_EQ(type(" enroll ").event,
              "<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"></vtguiEvent>");
}

TEST_F(TypedCommand, PressesNothingThatIsHiddenDisabledOrNotThere) {
    showTile("true", "false");
    EXPECT_EQ(type("enroll").event, "");
    showTile("false", "true");
    EXPECT_EQ(type("enroll").event, "");
    EXPECT_EQ(type("unenroll").answer, "There is no such button to press now: unenroll\n");
}

TEST_F(TypedCommand, GivesTheCookieToTheLoginInFront) {
    EXPECT_EQ(type("cookie x").answer, "No login is open.\n");
    openBrowser("a", "OnPress=\"a_web_OnPress\"");
    openBrowser("b", "OnPress=\"b_web_OnPress\"");
    EXPECT_EQ(type("cookie  two words \"&< ").event,
              "<vtguiEvent id=\"b_web_OnPress\"><webbrowser id=\"b_web\" value=\"two words "
              "&quot;&amp;&lt;\"/></vtguiEvent>");
}

TEST_F(TypedCommand, SendsWhatTheAlertPageWouldSend) {
    EXPECT_EQ(type("alert posture-update").answer, "No alert page is open.\n");
    openBrowser("a", "OnBrowseEvent=\"a_web_OnBrowseEvent\"");
    EXPECT_EQ(type("alert re-enroll enr-1").event,
              "<vtguiEvent id=\"a_web_OnBrowseEvent\"><webbrowser id=\"a_web\" type=\"re-enroll\" "
              "value=\"enr-1\"/></vtguiEvent>");
    EXPECT_EQ(type("alert posture-update").event,
              "<vtguiEvent id=\"a_web_OnBrowseEvent\"><webbrowser id=\"a_web\" type=\"posture-update\" "
              "value=\"\"/></vtguiEvent>");
    EXPECT_NE(type("alert").answer, "");
}

TEST_F(TypedCommand, ClosesWhatIsInFront) {
    EXPECT_EQ(type("close").answer, "Nothing is open that could be closed.\n");
    openBrowser("a", "");
    openBrowser("b", "");
    EXPECT_EQ(type("close").event, "<vtguiEvent id=\"b_close_OnClose\"></vtguiEvent>");
    open.pop_back();
    EXPECT_EQ(type("close").event, "<vtguiEvent id=\"a_close_OnClose\"></vtguiEvent>");
}

TEST_F(TypedCommand, AnswersHelpAndWhatItDoesNotKnow) {
    EXPECT_NE(type("help").answer.find("cookie VALUE"), std::string::npos);
    EXPECT_EQ(type("fly\x1b[2J").answer, "Unknown command: fly\\u001B[2J; help lists them.\n");
    EXPECT_EQ(type("   ").answer, "");
    EXPECT_EQ(type("").event, "");
    EXPECT_TRUE(type(" quit \r").wantsToQuit);
    EXPECT_FALSE(type("quite").wantsToQuit);
    EXPECT_EQ(type("service {\"certificate\": \"ok\"} ").knobs, "{\"certificate\": \"ok\"}");
}

} // namespace
