#include "xml/UiNoticeHelpers.h"

#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class UiNoticeHelpersTest : public testing::Test {
protected:
    /// What was added to the notice, each line without its indent.
    std::string added() const {
        const std::string text = test::maskTimestamps(notice.serialize());
        const std::string head = "<vtguiNotice type=\"update\" timestamp=\"*\"";
        if (text == head + "/>\n") {
            return "";
        }
        const std::string opening = head + ">\n\t";
        const std::string closing = "\n</vtguiNotice>\n";
        return text.substr(opening.size(), text.size() - opening.size() - closing.size());
    }

    XmlUINotice notice{UiNoticeType::Update, nullptr, nullptr};
};

TEST_F(UiNoticeHelpersTest, LabelWritesItsAttributesInOrder) {
    addLabel(notice, "i", "text", "tip", false, true, "black");
    EXPECT_EQ(added(), "<label id=\"i\" value=\"text\" tooltip=\"tip\" color=\"black\" hidden=\"false\" "
                       "disabled=\"true\"/>");
}

TEST_F(UiNoticeHelpersTest, LabelMayBeHidden) {
    addLabel(notice, "i", "text", "", true, false, "red");
    EXPECT_EQ(added(), "<label id=\"i\" value=\"text\" tooltip=\"\" color=\"red\" hidden=\"true\" "
                       "disabled=\"false\"/>");
}

TEST_F(UiNoticeHelpersTest, LabelWithEmptyTextIsHidden) {
    addLabel(notice, "i", "", "tip", false, false, "black");
    EXPECT_EQ(added(), "<label id=\"i\" value=\"\" tooltip=\"tip\" color=\"black\" hidden=\"true\" "
                       "disabled=\"false\"/>");
}

TEST_F(UiNoticeHelpersTest, LabelWithoutTooltipLeavesItOut) {
    addLabel(notice, "i", "text", nullptr, false, false, "black");
    EXPECT_EQ(added(),
              "<label id=\"i\" value=\"text\" color=\"black\" hidden=\"false\" disabled=\"false\"/>");
}

TEST_F(UiNoticeHelpersTest, LabelNeedsIdTextAndColor) {
    addLabel(notice, nullptr, "text", "tip", false, false, "black");
    addLabel(notice, "i", nullptr, "tip", false, false, "black");
    addLabel(notice, "i", "text", "tip", false, false, nullptr);
    EXPECT_EQ(added(), "");
}

TEST_F(UiNoticeHelpersTest, ButtonWritesItsAttributesInOrder) {
    XmlUICtrl button = addButton(notice, "i", "Press", false, true);
    EXPECT_EQ(button.getType(), UiCtrlType::Button);
    button.setEvent(UiCtrlEvent::OnPress, nullptr);
    EXPECT_EQ(added(),
              "<button id=\"i\" label=\"Press\" tooltip=\"Press\" hidden=\"false\" disabled=\"true\" "
              "OnPress=\"i_OnPress\"/>");
}

TEST_F(UiNoticeHelpersTest, ButtonWithEmptyLabelIsNotHidden) {
    addButton(notice, "i", "", false, false);
    EXPECT_EQ(added(), "<button id=\"i\" label=\"\" tooltip=\"\" hidden=\"false\" disabled=\"false\"/>");
}

TEST_F(UiNoticeHelpersTest, ButtonNeedsIdAndLabel) {
    EXPECT_TRUE(addButton(notice, nullptr, "Press", false, false).isNull());
    EXPECT_TRUE(addButton(notice, "i", nullptr, false, false).isNull());
    EXPECT_EQ(added(), "");
}

TEST_F(UiNoticeHelpersTest, MessageHistoryIsALogElement) {
    addMessageHistory(notice, nullptr);
    addMessageHistory(notice, "one");
    addMessageHistory(notice, "two");
    EXPECT_EQ(added(), "<log messagehistory=\"one\"/>\n\t<log messagehistory=\"two\"/>");
}

TEST_F(UiNoticeHelpersTest, TrayStateStringIsAControl) {
    addTrayStateString(notice, nullptr);
    EXPECT_EQ(added(), "");
    addTrayStateString(notice, "");
    EXPECT_EQ(added(), "<traystate id=\"tray_state_string\" value=\"\"/>");
    addTrayStateString(notice, "text");
    EXPECT_EQ(added(), "<traystate id=\"tray_state_string\" value=\"text\"/>");
}

TEST(UiNoticeHelpers, PiecesOfAPopupStandOnThePopup) {
    XmlUINotice notice(UiNoticeType::Popup, nullptr, nullptr);
    addMessageHistory(notice, "one");
    addButton(notice, "i", "Press", false, false);
    EXPECT_EQ(test::maskTimestamps(notice.serialize()),
              "<vtguiNotice type=\"popup\">\n\t<popup timestamp=\"*\">\n\t\t<log messagehistory=\"one\"/>\n"
              "\t\t<button id=\"i\" label=\"Press\" tooltip=\"Press\" hidden=\"false\" disabled=\"false\"/>\n"
              "\t</popup>\n</vtguiNotice>\n");
}

} // namespace
