#include "xml/XmlUICtrl.h"

#include "xml/XmlDoc.h"

#include <gtest/gtest.h>

namespace {

class XmlUICtrlTest : public testing::Test {
protected:
    XmlUICtrl control(const char* name) { return XmlUICtrl(document.addNode(name)); }
    XmlUICtrl button() { return control("button").setId("some_btn"); }

    XmlDoc document;
};

TEST_F(XmlUICtrlTest, IsNoControlByDefault) {
    XmlUICtrl none;
    EXPECT_TRUE(none.isNull());
    EXPECT_EQ(none.getType(), UiCtrlType::None);
    EXPECT_TRUE(none.setId("id").isNull());
    EXPECT_EQ(none.setEvent(UiCtrlEvent::OnPress, nullptr), "");
    EXPECT_EQ(none.getEvent(UiCtrlEvent::OnPress), "");
}

TEST_F(XmlUICtrlTest, TypeFollowsFromTheElementsName) {
    EXPECT_EQ(control("label").getType(), UiCtrlType::Label);
    EXPECT_EQ(control("outlinelistbox").getType(), UiCtrlType::OutlineListBox);
    EXPECT_EQ(control("webbrowser").getType(), UiCtrlType::WebBrowser);
    EXPECT_EQ(control("Label").getType(), UiCtrlType::None);
    EXPECT_EQ(control("something").getType(), UiCtrlType::None);
    EXPECT_EQ(control("").getType(), UiCtrlType::None);
}

TEST_F(XmlUICtrlTest, EventIdIsControlIdAndAttributeName) {
    XmlUICtrl pressed = button();
    EXPECT_EQ(pressed.getEvent(UiCtrlEvent::OnPress), "");
    EXPECT_EQ(pressed.setEvent(UiCtrlEvent::OnPress, nullptr), "some_btn_OnPress");
    EXPECT_EQ(pressed.getEvent(UiCtrlEvent::OnPress), "some_btn_OnPress");
    EXPECT_EQ(document.serialize(), "<button id=\"some_btn\" OnPress=\"some_btn_OnPress\"/>\n");
}

TEST_F(XmlUICtrlTest, SecondBindingYieldsTheSameEventId) {
    XmlUICtrl pressed = button();
    const std::string first = pressed.setEvent(UiCtrlEvent::OnPress, nullptr);
    pressed.setId("another_btn");
    EXPECT_EQ(pressed.setEvent(UiCtrlEvent::OnPress, nullptr), first);
}

TEST_F(XmlUICtrlTest, AttributeThatTheControlHasIsKept) {
    XmlUICtrl pressed = button();
    pressed.setAttribute("OnPress", "told_before");
    EXPECT_EQ(pressed.setEvent(UiCtrlEvent::OnPress, nullptr), "told_before");
    EXPECT_EQ(pressed.getAttribute("OnPress"), "told_before");
}

TEST_F(XmlUICtrlTest, ParameterStandsInItsOwnAttribute) {
    XmlUICtrl browser = control("webbrowser").setId("web");
    browser.setEvent(UiCtrlEvent::OnError, "web");
    EXPECT_EQ(document.serialize(), "<webbrowser id=\"web\" OnError=\"web_OnError\" OnErrorID=\"web\"/>\n");
}

TEST_F(XmlUICtrlTest, BindingWithoutParameterRemovesTheParameter) {
    XmlUICtrl pressed = button();
    pressed.setEvent(UiCtrlEvent::OnPress, "parameter");
    EXPECT_EQ(pressed.getAttribute("OnPressID"), "parameter");
    pressed.setEvent(UiCtrlEvent::OnPress, nullptr);
    EXPECT_EQ(document.serialize(), "<button id=\"some_btn\" OnPress=\"some_btn_OnPress\"/>\n");
}

TEST_F(XmlUICtrlTest, EveryEventBindsItsOwnAttributes) {
    const struct {
        int event;
        const char* attribute;
        const char* parameter;
    } rows[] = {{0, "OnPress", "OnPressID"},
                {1, "OnSelect", "OnSelectID"},
                {2, "OnDoubleClick", "OnDoubleClickID"},
                {3, "OnPressEnter", "OnPressEnterID"},
                {4, "OnOK", "OnOKID"},
                {5, "OnCancel", "OnCancelID"},
                {6, "OnClose", "OnCloseID"},
                {7, "OnError", "OnErrorID"},
                {8, "OnBrowseEvent", "OnBrowseEventID"}};
    XmlUICtrl all = button();
    for (const auto& row : rows) {
        const auto event = static_cast<UiCtrlEvent>(row.event);
        EXPECT_EQ(all.setEvent(event, "p"), std::string("some_btn_") + row.attribute);
        EXPECT_EQ(all.getAttribute(row.attribute), std::string("some_btn_") + row.attribute);
        EXPECT_EQ(all.getAttribute(row.parameter), "p");
    }
}

TEST_F(XmlUICtrlTest, ValueThatIsNoEventBindsNothing) {
    XmlUICtrl pressed = button();
    EXPECT_EQ(pressed.setEvent(static_cast<UiCtrlEvent>(9), "p"), "");
    EXPECT_EQ(pressed.setEvent(static_cast<UiCtrlEvent>(-1), "p"), "");
    EXPECT_EQ(pressed.getEvent(static_cast<UiCtrlEvent>(9)), "");
    EXPECT_EQ(document.serialize(), "<button id=\"some_btn\"/>\n");
}

} // namespace
