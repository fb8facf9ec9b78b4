#include "host/ScreenModel.h"

#include "tests/host/NoticeText.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using host::ScreenChange;
using test::noticeText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = host::ScreenChange::Kind;

const std::string tileSetup = noticeText(
    "setup",
    R"(<label id="simple_tile_label" value="Wren Gate" hidden="false" disabled="false"/>)"
    R"(<label id="simple_status" value="Initializing" hidden="false" disabled="false"/>)"
    R"(<log messagehistory="Initializing"/>)"
    R"(<button id="enroll" label="Enroll" hidden="true" disabled="true" OnPress="enroll_OnPress"/>)"
    R"(<traystate id="tray_state_string" value="Starting"/>)",
    R"( state="Transition")");

const std::string panelSetup =
    noticeText("setup", R"(<label id="group" value="Enrollments:" hidden="false" disabled="false"/>)"
                        R"(<button id="unenroll" label="Unenroll" hidden="false" disabled="true"/>)");

class ScreenModel : public ::testing::Test {
protected:
    std::vector<Kind> apply(const std::string& xml) {
        changes = screen.apply(xml);
        std::vector<Kind> kinds;
        for (const ScreenChange& change : changes) {
            kinds.push_back(change.kind);
        }
        return kinds;
    }

    host::ScreenModel screen;
    std::vector<ScreenChange> changes;
};

TEST_F(ScreenModel, SetupLaysOutAPart) {
    EXPECT_THAT(apply(tileSetup), ElementsAre(Kind::Part, Kind::TrayState, Kind::History));
    ASSERT_EQ(screen.parts().size(), 1u);
    const auto& tile = screen.parts()[0];
    EXPECT_TRUE(tile.isTile());
    ASSERT_EQ(tile.controls.size(), 3u);
    EXPECT_EQ(tile.controls[1].id(), "simple_status");
    EXPECT_EQ(tile.find("simple_status")->attribute("value"), "Initializing");
    EXPECT_EQ(tile.find("enroll")->element, "button");
    EXPECT_TRUE(tile.find("enroll")->isHidden());
    EXPECT_TRUE(tile.find("enroll")->isDisabled());
    EXPECT_EQ(tile.find("missing"), nullptr);
    EXPECT_EQ(screen.trayState(), "Transition");
    EXPECT_EQ(screen.trayText(), "Starting");
    EXPECT_EQ(changes[2].text, "Initializing");
}

TEST_F(ScreenModel, UpdateWritesOverAndKeepsTheBinding) {
    apply(tileSetup);
    EXPECT_THAT(apply(noticeText("update",
                                 R"(<label id="simple_status" value="Ready" hidden="false"/>)"
                                 R"(<button id="enroll" label="Enroll" hidden="false" disabled="false"/>)")),
                ElementsAre(Kind::Part));
    ASSERT_EQ(screen.parts().size(), 1u);
    const auto& tile = screen.parts()[0];
    EXPECT_EQ(tile.controls.size(), 3u);
    EXPECT_EQ(tile.find("simple_status")->attribute("value"), "Ready");
    EXPECT_FALSE(tile.find("enroll")->isHidden());
    EXPECT_EQ(tile.find("enroll")->attribute("OnPress"), "enroll_OnPress");
    EXPECT_EQ(screen.trayState(), "Transition") << "not told anew";
}

TEST_F(ScreenModel, PartsStayApart) {
    apply(tileSetup);
    apply(panelSetup);
    EXPECT_THAT(apply(noticeText("update", R"(<button id="unenroll" disabled="false"/>)")),
                ElementsAre(Kind::Part));
    EXPECT_EQ(changes[0].index, 1u);
    ASSERT_EQ(screen.parts().size(), 2u);
    EXPECT_FALSE(screen.parts()[1].isTile());
    EXPECT_FALSE(screen.parts()[1].find("unenroll")->isDisabled());
    EXPECT_EQ(screen.parts()[1].find("unenroll")->attribute("label"), "Unenroll");
}

TEST_F(ScreenModel, SecondSetupLaysThePartOutAnew) {
    apply(tileSetup);
    apply(noticeText("setup", R"(<label id="simple_status" value="Again"/>)"));
    ASSERT_EQ(screen.parts().size(), 1u);
    EXPECT_EQ(screen.parts()[0].controls.size(), 1u);
}

TEST_F(ScreenModel, ListsAreReplacedWhole) {
    const std::string list =
        R"(<outlinelistbox id="list" updaterows="false" num_columns="2">)"
        R"(<listgroup id="g"><listrowcolumn label="Group:"/>)"
        R"(<listrow id="r"><listrowcolumn label="Row:"/><listrowcolumn label="1"/></listrow>)"
        R"(<listrow id="r"><listrowcolumn label="Row:"/><listrowcolumn label="2"/></listrow>)"
        R"(</listgroup></outlinelistbox>)";
    EXPECT_THAT(apply(noticeText("setup", list)), ElementsAre(Kind::Statistics));
    EXPECT_EQ(changes[0].text, "list");
    EXPECT_EQ(screen.statistics().at("list"),
              (host::StatisticsList{{"g", "Group:", {{"r", {"Row:", "1"}}, {"r", {"Row:", "2"}}}}}));
    apply(noticeText("update",
                     R"(<outlinelistbox id="list" updaterows="true"><listgroup id="h"/></outlinelistbox>)"));
    EXPECT_EQ(screen.statistics().at("list"), (host::StatisticsList{{"h", "", {}}}));
    EXPECT_THAT(screen.parts(), IsEmpty());
}

TEST_F(ScreenModel, ToastsComeAndGoByThemselves) {
    EXPECT_THAT(apply(noticeText(
                    "popup", R"(<popup id="toast" type="notification" severity="info">)"
                             R"(<title value="Title"/><text value="Text"/>)"
                             R"(<button id="b" label="Enroll" hidden="false" disabled="false"/></popup>)")),
                ElementsAre(Kind::Toast));
    EXPECT_EQ(changes[0].popup.title, "Title");
    EXPECT_THAT(changes[0].popup.texts, ElementsAre("Text"));
    ASSERT_EQ(changes[0].popup.controls.size(), 1u);
    EXPECT_EQ(changes[0].popup.controls[0].attribute("label"), "Enroll");
    EXPECT_THAT(screen.popups(), IsEmpty());
}

const std::string openDialog = noticeText(
    "popup", R"(<popup id="dialog" type="custom"><title value="Title"/><closebutton id="x"/><layout>)"
             R"(<row><label id="l1" value="Header"/></row><row><label id="l2" value="Details"/></row>)"
             R"(<row><button id="b" label="Close"/></row></layout></popup>)");

TEST_F(ScreenModel, DialogStaysUntilItIsDisposedOf) {
    EXPECT_THAT(apply(openDialog), ElementsAre(Kind::PopupOpened));
    const auto& popup = screen.popups().at("dialog");
    EXPECT_EQ(popup.type, "custom");
    EXPECT_THAT(popup.texts, ElementsAre("Header", "Details"));
    EXPECT_EQ(popup.controls.size(), 2u);
    const std::string dispose = noticeText("popup", R"(<popup id="dialog" dispose="true"/>)");
    EXPECT_THAT(apply(dispose), ElementsAre(Kind::PopupClosed));
    EXPECT_EQ(changes[0].popup.title, "Title");
    EXPECT_THAT(screen.popups(), IsEmpty());
    EXPECT_THAT(apply(dispose), IsEmpty()) << "it is gone already";
}

TEST_F(ScreenModel, BrowserIsRaisedByANoticeWithoutContent) {
    const std::string raise = noticeText("popup", R"(<popup id="browser" type="browser" show="true"/>)");
    EXPECT_THAT(apply(raise), IsEmpty()) << "not open yet";
    apply(noticeText("popup",
                     R"(<popup id="browser" type="browser" show="true"><title value="T"/>)"
                     R"(<webbrowser id="w" operation="browse" start_url="https://a.test/"/></popup>)"));
    EXPECT_THAT(apply(raise), ElementsAre(Kind::PopupRaised));
    EXPECT_EQ(screen.popups().at("browser").controls[0].attribute("start_url"), "https://a.test/");
}

TEST_F(ScreenModel, WindowIsShownAndHidden) {
    EXPECT_THAT(apply(noticeText("update", R"(<application show="false"/>)")),
                ElementsAre(Kind::WindowHidden));
    EXPECT_THAT(apply(noticeText("update", R"(<application show="true"/>)")), ElementsAre(Kind::WindowShown));
}

TEST_F(ScreenModel, LogNoticesChangeNothing) {
    EXPECT_THAT(
        apply(noticeText("apilog", "<statusnotification>{}</statusnotification>", R"( tag="apilog")")),
        IsEmpty());
}

TEST_F(ScreenModel, UnreadableNoticesAreTold) {
    EXPECT_THAT(apply("nonsense"), ElementsAre(Kind::Unreadable));
    EXPECT_THAT(apply(noticeText("quit", "")), ElementsAre(Kind::Unreadable));
    EXPECT_EQ(changes[0].text, "a notice of type \"quit\"");
    EXPECT_THAT(apply(noticeText("popup", "")), ElementsAre(Kind::Unreadable));
    EXPECT_THAT(apply(noticeText("update", "")), IsEmpty());
}

} // namespace
