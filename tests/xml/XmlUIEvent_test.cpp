#include "xml/XmlUIEvent.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(XmlUIEvent, HoldsItsIdAndControls) {
    const XmlUIEvent event("<vtguiEvent id=\"web_OnPress\">"
                           "<webbrowser id=\"web\" value=\"cookie\" error=\"\"/></vtguiEvent>");
    EXPECT_EQ(event.getId(), "web_OnPress");
    const XmlUICtrl control = event.getControl("web");
    EXPECT_FALSE(control.isNull());
    EXPECT_EQ(control.getType(), UiCtrlType::WebBrowser);
    EXPECT_EQ(control.getAttribute("value"), "cookie");
}

TEST(XmlUIEvent, RootWithoutAttributesIsInvalid) {
    XmlUIEvent event("<vtguiEvent/>");
    EXPECT_EQ(event.getId(), "");
    EXPECT_FALSE(event.parse("<vtguiEvent/>"));
}

TEST(XmlUIEvent, EmptyIdIsInvalid) {
    const XmlUIEvent event("<vtguiEvent id=\"\"><button id=\"b\"/></vtguiEvent>");
    EXPECT_EQ(event.getId(), "");
    EXPECT_TRUE(event.getControl("b").isNull());
}

TEST(XmlUIEvent, RootOfANoticeIsInvalid) {
    XmlUIEvent event("<vtguiNotice id=\"a\"/>");
    EXPECT_EQ(event.getId(), "");
    EXPECT_FALSE(event.parse("<vtguiNotice id=\"a\"/>"));
}

TEST(XmlUIEvent, RootThatDiffersInCaseIsInvalid) {
    EXPECT_EQ(XmlUIEvent("<vtguievent id=\"a\"/>").getId(), "");
    EXPECT_EQ(XmlUIEvent("<VTGUIEVENT id=\"a\"/>").getId(), "");
}

TEST(XmlUIEvent, WhatIsNoXmlIsInvalid) {
    EXPECT_EQ(XmlUIEvent(nullptr).getId(), "");
    EXPECT_EQ(XmlUIEvent("").getId(), "");
    EXPECT_EQ(XmlUIEvent("vtguiEvent").getId(), "");
    EXPECT_EQ(XmlUIEvent("<vtguiEvent id=\"a\"").getId(), "");
    EXPECT_EQ(XmlUIEvent("<vtguiEvent id=\"a\">").getId(), "");
}

TEST(XmlUIEvent, ControlOfUnknownElementNameIsReadable) {
    const XmlUIEvent event("<vtguiEvent id=\"a\"><gadget id=\"g\" value=\"v\"/></vtguiEvent>");
    EXPECT_FALSE(event.getControl("g").isNull());
    EXPECT_EQ(static_cast<int>(event.getControl("g").getType()), 19);
    EXPECT_EQ(event.getControl("g").getAttribute("value"), "v");
}

TEST(XmlUIEvent, ControlThatTheTextDoesNotHoldIsNull) {
    const XmlUIEvent event("<vtguiEvent id=\"a\"><button id=\"b\" value=\"v\"/></vtguiEvent>");
    for (const char* id : {"c", "B", "", "b "}) {
        const XmlUICtrl control = event.getControl(id);
        EXPECT_TRUE(control.isNull()) << id;
        EXPECT_EQ(static_cast<int>(control.getType()), 19) << id;
        EXPECT_EQ(control.getAttribute("value"), "") << id;
    }
    EXPECT_TRUE(event.getControl(nullptr).isNull());
}

TEST(XmlUIEvent, LaterOfTwoControlsWithOneIdWins) {
    const XmlUIEvent event("<vtguiEvent id=\"a\"><button id=\"b\" value=\"1\"/>"
                           "<label id=\"b\" value=\"2\"/></vtguiEvent>");
    EXPECT_EQ(event.getControl("b").getAttribute("value"), "2");
    EXPECT_EQ(event.getControl("b").getType(), UiCtrlType::Label);
}

TEST(XmlUIEvent, LaterMeansDocumentOrderWhateverTheDepth) {
    const XmlUIEvent event("<vtguiEvent id=\"a\"><row><row><button id=\"b\" value=\"1\"/></row></row>"
                           "<button id=\"b\" value=\"2\"/></vtguiEvent>");
    EXPECT_EQ(event.getControl("b").getAttribute("value"), "2");
}

TEST(XmlUIEvent, RootIsAControlOfItsOwnId) {
    const XmlUIEvent event("<vtguiEvent id=\"a\" extra=\"x\"/>");
    EXPECT_EQ(event.getControl("a").getAttribute("extra"), "x");
    EXPECT_EQ(static_cast<int>(event.getControl("a").getType()), 19);
}

TEST(XmlUIEvent, ControlsAreFoundAtAnyDepth) {
    std::string text = "<vtguiEvent id=\"a\">";
    std::string end = "</vtguiEvent>";
    for (int depth = 0; depth < 200; ++depth) {
        text += "<row>";
        end = "</row>" + end;
    }
    text += "<button id=\"deep\" value=\"v\"/>" + end;
    EXPECT_EQ(XmlUIEvent(text.c_str()).getControl("deep").getAttribute("value"), "v");
}

TEST(XmlUIEvent, ManyControlsAreTakenInOneGo) {
    std::string text = "<vtguiEvent id=\"a\">";
    for (int count = 0; count < 20000; ++count) {
        text += "<b id=\"" + std::to_string(count) + "\"/>";
    }
    text += "</vtguiEvent>";
    const XmlUIEvent event(text.c_str());
    EXPECT_FALSE(event.getControl("0").isNull());
    EXPECT_FALSE(event.getControl("19999").isNull());
}

TEST(XmlUIEvent, FirstRootOfTheRightNameIsTaken) {
    const XmlUIEvent event("<other/><vtguiEvent id=\"a\"/><vtguiEvent id=\"b\"/>");
    EXPECT_EQ(event.getId(), "a");
    EXPECT_TRUE(event.getControl("b").isNull());
}

TEST(XmlUIEvent, SecondTextReplacesTheFirst) {
    XmlUIEvent event("<vtguiEvent id=\"a\"><button id=\"b\"/></vtguiEvent>");
    EXPECT_TRUE(event.parse("<vtguiEvent id=\"c\"><button id=\"d\"/></vtguiEvent>"));
    EXPECT_EQ(event.getId(), "c");
    EXPECT_FALSE(event.getControl("d").isNull());
    EXPECT_TRUE(event.getControl("b").isNull());
    EXPECT_FALSE(event.parse("<vtguiEvent"));
    EXPECT_EQ(event.getId(), "");
    EXPECT_TRUE(event.getControl("d").isNull());
    EXPECT_FALSE(event.parse(nullptr));
    EXPECT_EQ(event.getId(), "");
}

} // namespace
