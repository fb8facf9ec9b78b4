#include "xml/XmlUINotice.h"

#include "common2/util/LocalTime.h"
#include "common2/util/LocalTimeText.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

namespace {

constexpr const char* moduleName = "com.norvane.vantor.presentation.quill";

std::string textOf(const XmlUINotice& notice) { return test::maskTimestamps(notice.serialize()); }

TEST(XmlUINotice, ScreenNoticeBeginsWithModuleTypeAndTimestamp) {
    EXPECT_EQ(
        textOf(XmlUINotice(UiNoticeType::Setup, nullptr, moduleName)),
        "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"setup\" timestamp=\"*\"/>\n");
    EXPECT_EQ(
        textOf(XmlUINotice(UiNoticeType::Update, nullptr, moduleName)),
        "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"update\" timestamp=\"*\"/>\n");
}

TEST(XmlUINotice, TimestampFollowsTheZoneThatTheDeviceTravelsTo) {
    common2::followTimeZone(-1); // so that this second has not been looked at
    const test::ScopedEnvironment abroad("TZ", "YST-11", test::ScopedEnvironment::Zone::IsReadAtTheEnd);
    const std::int64_t before = common2::presentSeconds();
    const std::string notice = XmlUINotice(UiNoticeType::Setup, nullptr, moduleName).serialize();
    common2::readTimeZone();
    bool isThere = false;
    for (std::int64_t second = before; second <= common2::presentSeconds(); ++second) {
        isThere = isThere || notice.find(common2::localTimeText(second, L"%c")) != std::string::npos;
    }
    EXPECT_TRUE(isThere) << notice;
}

TEST(XmlUINotice, LogNoticeHasItsTagBeforeTheTimestamp) {
    EXPECT_EQ(textOf(XmlUINotice(UiNoticeType::ApiLog, "apilog", moduleName)),
              "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"apilog\" tag=\"apilog\" "
              "timestamp=\"*\"/>\n");
}

TEST(XmlUINotice, PopupNoticeCarriesTheTimestampOnThePopup) {
    EXPECT_EQ(textOf(XmlUINotice(UiNoticeType::Popup, nullptr, moduleName)),
              "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"popup\">\n"
              "\t<popup timestamp=\"*\"/>\n"
              "</vtguiNotice>\n");
}

TEST(XmlUINotice, ModuleIsOptionalAndUnknownTypeHasNoLiteral) {
    EXPECT_EQ(textOf(XmlUINotice(UiNoticeType::Quit, nullptr, nullptr)),
              "<vtguiNotice type=\"quit\" timestamp=\"*\"/>\n");
    EXPECT_EQ(textOf(XmlUINotice(UiNoticeType::Unknown, "t", "m")),
              "<vtguiNotice module=\"m\" tag=\"t\" timestamp=\"*\"/>\n");
}

TEST(XmlUINotice, TimestampIsTheLocalTimeOfConstruction) {
    const auto textAt = [](std::time_t time) {
        char text[64];
        std::strftime(text, sizeof text, "%c", std::localtime(&time));
        return std::string(text);
    };
    const std::time_t before = std::time(nullptr);
    const std::string written =
        XmlUINotice(UiNoticeType::Setup, nullptr, nullptr).getRoot().getAttribute("timestamp");
    const std::time_t after = std::time(nullptr);
    bool matches = false;
    for (std::time_t time = before; time <= after; ++time) {
        matches = matches || textAt(time) == written;
    }
    EXPECT_TRUE(matches) << written;
}

TEST(XmlUINotice, GivenTimestampReplacesTheOwnInPlace) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    notice.setTrayState(UiTrayState::Good);
    notice.setTimestamp("noon");
    EXPECT_EQ(notice.serialize(), "<vtguiNotice type=\"setup\" timestamp=\"noon\" state=\"Good\"/>\n");
}

TEST(XmlUINotice, TrayStateStandsLastOnTheRoot) {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "m");
    notice.setTrayState(UiTrayState::Transition);
    EXPECT_EQ(textOf(notice),
              "<vtguiNotice module=\"m\" type=\"update\" timestamp=\"*\" state=\"Transition\"/>\n");
}

TEST(XmlUINotice, TrayStateOfAPopupStandsOnThePopup) {
    XmlUINotice notice(UiNoticeType::Popup, nullptr, nullptr);
    notice.setTrayState(UiTrayState::Error);
    EXPECT_EQ(textOf(notice),
              "<vtguiNotice type=\"popup\">\n\t<popup timestamp=\"*\" state=\"Error\"/>\n</vtguiNotice>\n");
}

TEST(XmlUINotice, NodesStandUnderTheRoot) {
    XmlUINotice screen(UiNoticeType::Update, nullptr, nullptr);
    screen.addNode("application").setAttribute("show", "false");
    EXPECT_TRUE(screen.addNode(nullptr).isNull());
    EXPECT_EQ(textOf(screen), "<vtguiNotice type=\"update\" timestamp=\"*\">\n"
                              "\t<application show=\"false\"/>\n</vtguiNotice>\n");
    XmlUINotice popup(UiNoticeType::Popup, nullptr, nullptr);
    popup.addNode("title").setAttribute("value", "t");
    EXPECT_EQ(textOf(popup), "<vtguiNotice type=\"popup\">\n\t<popup timestamp=\"*\">\n"
                             "\t\t<title value=\"t\"/>\n\t</popup>\n</vtguiNotice>\n");
}

TEST(XmlUINotice, ControlIsNamedByItsTypeWithTheIdFirst) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    XmlUICtrl control = notice.addCtrl(UiCtrlType::OutlineListBox, "list");
    control.setAttribute("num_columns", "2");
    EXPECT_EQ(control.getType(), UiCtrlType::OutlineListBox);
    EXPECT_EQ(textOf(notice), "<vtguiNotice type=\"setup\" timestamp=\"*\">\n"
                              "\t<outlinelistbox id=\"list\" num_columns=\"2\"/>\n</vtguiNotice>\n");
}

TEST(XmlUINotice, OneIdIsOneElement) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    notice.addCtrl(UiCtrlType::Label, "id").setAttribute("value", "1");
    XmlUICtrl again = notice.addCtrl(UiCtrlType::Label, "id");
    again.setAttribute("value", "2");
    EXPECT_EQ(textOf(notice), "<vtguiNotice type=\"setup\" timestamp=\"*\">\n"
                              "\t<label id=\"id\" value=\"2\"/>\n</vtguiNotice>\n");
}

TEST(XmlUINotice, KnownIdIsFoundWhereverItStandsAndWhateverItsType) {
    XmlUINotice notice(UiNoticeType::Popup, nullptr, nullptr);
    XmlNode row = notice.addNode("row");
    notice.addCtrl(UiCtrlType::Button, "id", row);
    EXPECT_EQ(notice.addCtrl(UiCtrlType::Label, "id").getType(), UiCtrlType::Button);
    EXPECT_EQ(textOf(notice), "<vtguiNotice type=\"popup\">\n\t<popup timestamp=\"*\">\n\t\t<row>\n"
                              "\t\t\t<button id=\"id\"/>\n\t\t</row>\n\t</popup>\n</vtguiNotice>\n");
}

TEST(XmlUINotice, EmptyIdIsAnId) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    EXPECT_FALSE(notice.addCtrl(UiCtrlType::Label, "").isNull());
    EXPECT_EQ(notice.addCtrl(UiCtrlType::Button, "").getType(), UiCtrlType::Label);
}

TEST(XmlUINotice, WhatCanBeNoControlChangesNothing) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    EXPECT_TRUE(notice.addCtrl(UiCtrlType::Label, nullptr).isNull());
    EXPECT_TRUE(notice.addCtrl(UiCtrlType::None, "id").isNull());
    EXPECT_TRUE(notice.addCtrl(static_cast<UiCtrlType>(20), "id").isNull());
    EXPECT_TRUE(notice.addCtrl(UiCtrlType::Label, "id", XmlNode()).isNull());
    EXPECT_EQ(textOf(notice), "<vtguiNotice type=\"setup\" timestamp=\"*\"/>\n");
    EXPECT_FALSE(notice.addCtrl(UiCtrlType::Label, "id").isNull());
}

TEST(XmlUINotice, ManyControlsKeepTheirIds) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    for (int count = 0; count < 1000; ++count) {
        notice.addCtrl(UiCtrlType::Label, std::to_string(count).c_str());
    }
    for (int count = 0; count < 1000; ++count) {
        EXPECT_EQ(notice.addCtrl(UiCtrlType::Label, std::to_string(count).c_str()).getAttribute("id"),
                  std::to_string(count));
    }
}

TEST(XmlUINoticeParse, TakesANoticeWithItsControls) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    notice.addCtrl(UiCtrlType::Label, "old");
    ASSERT_TRUE(notice.parse("<vtguiNotice type=\"update\"><row id=\"r\"><button id=\"b\"/></row>"
                             "<label id=\"l\" value=\"v\"/></vtguiNotice>"));
    EXPECT_TRUE(notice.isValid());
    EXPECT_EQ(notice.getType(), UiNoticeType::Update);
    EXPECT_EQ(notice.addCtrl(UiCtrlType::Label, "b").getType(), UiCtrlType::Button);
    EXPECT_EQ(notice.addCtrl(UiCtrlType::Label, "l").getAttribute("value"), "v");
    notice.addCtrl(UiCtrlType::Label, "old");
    notice.addCtrl(UiCtrlType::Label, "r");
    EXPECT_EQ(
        notice.serialize(),
        "<vtguiNotice type=\"update\">\n\t<row id=\"r\">\n\t\t<button id=\"b\"/>\n\t</row>\n"
        "\t<label id=\"l\" value=\"v\"/>\n\t<label id=\"old\"/>\n\t<label id=\"r\"/>\n</vtguiNotice>\n");
}

TEST(XmlUINoticeParse, PopupOfAPopupNoticeTakesWhatIsAdded) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    ASSERT_TRUE(notice.parse("<vtguiNotice type=\"popup\"><popup id=\"p\"/></vtguiNotice>"));
    notice.addNode("title");
    EXPECT_EQ(notice.serialize(),
              "<vtguiNotice type=\"popup\">\n\t<popup id=\"p\">\n\t\t<title/>\n\t</popup>\n</vtguiNotice>\n");
}

TEST(XmlUINoticeParse, RefusesWhatIsNoKnownNotice) {
    for (const char* text :
         {"", "<vtguiNotice", "<vtguiEvent type=\"setup\"/>", "<vtguiNotice/>", "<vtguiNotice type=\"\"/>",
          "<vtguiNotice type=\"Setup\"/>", "<vtguiNotice type=\"unknown\"/>"}) {
        XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
        EXPECT_FALSE(notice.parse(text)) << text;
        EXPECT_FALSE(notice.isValid()) << text;
        EXPECT_TRUE(notice.addCtrl(UiCtrlType::Label, "id").isNull()) << text;
        EXPECT_TRUE(notice.addNode("node").isNull()) << text;
    }
}

TEST(XmlUINoticeParse, NullTextLeavesTheDocument) {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, nullptr);
    EXPECT_FALSE(notice.parse(nullptr));
    EXPECT_FALSE(notice.isValid());
    EXPECT_EQ(textOf(notice), "<vtguiNotice type=\"setup\" timestamp=\"*\"/>\n");
}

} // namespace
