#include "host/serve/LiveScreen.h"

#include "host/serve/ScreenJson.h"
#include "tests/host/NoticeText.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::serve::LiveBrowser;
using host::serve::LivePopup;
using test::noticeText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t noon = 1'700'000'000'000;

std::string dialog(const std::string& id, const std::string& content) {
    return noticeText("popup", "<popup id=\"" + id + "\" type=\"custom\">" + content + "</popup>");
}

std::string browser(const std::string& id, const std::string& attributes) {
    return noticeText("popup", "<popup id=\"" + id +
                                   "\" type=\"browser\" show=\"true\"><title value=\"T\"/>" +
                                   "<webbrowser id=\"" + id + "_web\" " + attributes + "/></popup>");
}

std::string raise(const std::string& id) {
    return noticeText("popup", "<popup id=\"" + id + "\" type=\"browser\" show=\"true\"/>");
}

std::string dispose(const std::string& id) {
    return noticeText("popup", "<popup id=\"" + id + "\" dispose=\"true\"/>");
}

class LiveScreen : public ::testing::Test {
protected:
    void apply(const std::string& xml) { EXPECT_EQ(screen.apply(xml, noon), std::nullopt); }
    /// The popups as "id number".
    std::vector<std::string> popups() const {
        std::vector<std::string> list;
        for (const LivePopup& popup : screen.popups()) {
            list.push_back(popup.popup.id + " " + std::to_string(popup.number));
        }
        return list;
    }
    const LiveBrowser& page(const std::string& id) const { return *screen.findPopup(id)->browser; }
    std::string json() const { return boost::json::serialize(host::serve::screenJson(screen)); }

    std::vector<std::string> heard;
    host::serve::LiveScreen screen{
        {[this](const LiveBrowser& opened) {
             heard.push_back("opened " + std::to_string(opened.number) + " " + opened.startUrl);
             return "at " + std::to_string(opened.number);
         },
         [this](std::uint64_t number) { heard.push_back("closed " + std::to_string(number)); }}};
};

TEST_F(LiveScreen, BeginsEmpty) {
    EXPECT_EQ(json(), R"({"window":"","parts":[],"tray":{"state":"","text":""},"statistics":{},"popups":[],)"
                      R"("toasts":[],"history":[]})");
}

TEST_F(LiveScreen, IsToldAsAWhole) {
    apply(noticeText(
        "setup",
        R"(<label id="simple_tile_label" value="Wren Gate"/><label id="simple_status" value="Hi"/>)"
        R"(<log messagehistory="Hi"/><button id="b" label="Go" hidden="false" disabled="true"/>)"
        R"(<traystate id="t" value="Tip"/>)",
        " state=\"Good\""));
    apply(noticeText("update",
                     R"(<outlinelistbox id="list"><listgroup id="g"><listrowcolumn label="G:"/>)"
                     R"(<listrow id="r"><listrowcolumn label="a"/><listrowcolumn label="b"/></listrow>)"
                     R"(</listgroup></outlinelistbox><application show="false"/>)"));
    apply(noticeText("popup",
                     R"(<popup id="toast" type="notification"><title value="T"/><text value="x"/></popup>)"));
    apply(dialog("d", R"(<title value="D"/><closebutton id="c" OnClose="c_OnClose"/>)"));
    apply(browser("p", R"(operation="browse_for_cookie" start_url="s" final_url="f" cookie_name="n")"));
    EXPECT_EQ(
        json(),
        R"({"window":"hidden","parts":[{"kind":"tile","title":"Wren Gate","controls":[)"
        R"({"element":"label","id":"simple_tile_label","hidden":false,"disabled":false,)"
        R"("attributes":{"id":"simple_tile_label","value":"Wren Gate"}},)"
        R"({"element":"label","id":"simple_status","hidden":false,"disabled":false,)"
        R"("attributes":{"id":"simple_status","value":"Hi"}},)"
        R"({"element":"button","id":"b","hidden":false,"disabled":true,)"
        R"("attributes":{"disabled":"true","hidden":"false","id":"b","label":"Go"}}]}],)"
        R"("tray":{"state":"Good","text":"Tip"},)"
        R"("statistics":{"list":[{"id":"g","title":"G:","rows":[{"id":"r","columns":["a","b"]}]}]},)"
        R"("popups":[{"id":"d","type":"custom","title":"D","texts":[],"controls":[)"
        R"({"element":"closebutton","id":"c","hidden":false,"disabled":false,)"
        R"("attributes":{"OnClose":"c_OnClose","id":"c"}}],"number":1,"browser":null},)"
        R"({"id":"p","type":"browser","title":"T","texts":[],"controls":[)"
        R"({"element":"webbrowser","id":"p_web","hidden":false,"disabled":false,"attributes":{)"
        R"("cookie_name":"n","final_url":"f","id":"p_web","operation":"browse_for_cookie","start_url":"s"}}],)"
        R"("number":2,"browser":{"number":1,"control":"p_web","operation":"browse_for_cookie",)"
        R"("address":"at 1","start_url":"s","final_url":"f","cookie_name":"n","detail":"",)"
        R"("detail_number":0}}],"toasts":[{"number":1,"time":1700000000000,"id":"toast","title":"T",)"
        R"("texts":["x"],"controls":[]}],)"
        R"("history":[{"number":1,"time":1700000000000,"text":"Hi"}]})");
}

TEST_F(LiveScreen, GroupsAreNoTiles) {
    apply(noticeText("setup", R"(<label id="l" value="Group:"/>)"));
    EXPECT_THAT(json(), ::testing::HasSubstr(R"({"kind":"group","title":"Group:")"));
}

TEST_F(LiveScreen, PopupsStandInTheOrderInWhichTheyCameToTheFront) {
    apply(dialog("a", "<title/>"));
    apply(browser("b", "operation=\"browse\""));
    EXPECT_THAT(popups(), ElementsAre("a 1", "b 2"));
    apply(raise("a"));
    EXPECT_THAT(popups(), ElementsAre("b 2", "a 3"));
    apply(browser("b", "operation=\"browse\""));
    EXPECT_THAT(popups(), ElementsAre("a 3", "b 4"));
    apply(dispose("a"));
    apply(dispose("never there"));
    apply(raise("never there"));
    EXPECT_THAT(popups(), ElementsAre("b 4"));
}

TEST_F(LiveScreen, PageKeepsItsNumberWhileItsPopupIsRaised) {
    apply(browser("p", R"(operation="browse_for_cookie" start_url="s")"));
    apply(raise("p"));
    EXPECT_EQ(page("p").number, 1u);
    EXPECT_THAT(heard, ElementsAre("opened 1 s"));
}

TEST_F(LiveScreen, PopupThatIsOpenedAgainShowsAnotherPage) {
    apply(browser("p", R"(operation="browse_for_cookie" start_url="s")"));
    apply(browser("p", R"(operation="browse_for_local_content" start_url="l" event_dispatch_detail="d1")"));
    EXPECT_EQ(page("p").number, 2u);
    EXPECT_EQ(page("p").address, "at 2");
    EXPECT_EQ(page("p").detail, "d1");
    EXPECT_EQ(page("p").detailNumber, 1u);
    apply(dispose("p"));
    EXPECT_THAT(heard, ElementsAre("opened 1 s", "opened 2 l", "closed 1", "closed 2"));
}

TEST_F(LiveScreen, NewDetailIsForThePageThatIsOpen) {
    apply(browser("p", R"(operation="browse_for_local_content" start_url="l" event_dispatch_detail="d1")"));
    apply(browser("p", R"(operation="dispatch_event" event_dispatch_detail="d2" OnClose="x")"));
    EXPECT_EQ(page("p").number, 1u);
    EXPECT_EQ(page("p").address, "at 1");
    EXPECT_EQ(page("p").startUrl, "l");
    EXPECT_EQ(page("p").operation, "dispatch_event");
    EXPECT_EQ(page("p").detail, "d2");
    EXPECT_EQ(page("p").detailNumber, 2u);
    apply(browser("p", R"(operation="dispatch_event" event_dispatch_detail="d2")"));
    EXPECT_EQ(page("p").detailNumber, 3u) << "the same once more is told once more";
    EXPECT_THAT(heard, ElementsAre("opened 1 l"));
}

TEST_F(LiveScreen, NewDetailForAPageThatIsNotThereOpensNone) {
    apply(browser("p", R"(operation="dispatch_event" event_dispatch_detail="d")"));
    EXPECT_EQ(page("p").number, 1u);
    EXPECT_EQ(page("p").startUrl, "");
}

TEST_F(LiveScreen, DialogThatBecomesABrowserAndBack) {
    apply(browser("p", "operation=\"browse\" start_url=\"s\""));
    apply(dialog("p", "<title/>"));
    EXPECT_FALSE(screen.findPopup("p")->browser.has_value());
    EXPECT_THAT(heard, ElementsAre("opened 1 s", "closed 1"));
}

TEST_F(LiveScreen, KeepsTheLatestToastsAndMessages) {
    for (int i = 1; i <= 10; ++i) {
        apply(noticeText("popup", R"(<popup id="t" type="notification"><title value="T"/></popup>)"));
    }
    ASSERT_EQ(screen.toasts().size(), 8u);
    EXPECT_EQ(screen.toasts().front().number, 3u);
    EXPECT_EQ(screen.toasts().back().number, 10u);
    for (int i = 1; i <= 201; ++i) {
        apply(noticeText("update", "<log messagehistory=\"m\"/>"));
    }
    ASSERT_EQ(screen.history().size(), 200u);
    EXPECT_EQ(screen.history().front().number, 2u);
    screen.clearHistory();
    EXPECT_THAT(screen.history(), IsEmpty());
    apply(noticeText("update", "<log messagehistory=\"m\"/>"));
    EXPECT_EQ(screen.history().front().number, 202u);
}

TEST_F(LiveScreen, ClearedScreenKeepsItsHistory) {
    apply(noticeText("setup",
                     R"(<label id="l" value="v"/><log messagehistory="m"/><application show="true"/>)"));
    apply(browser("p", "operation=\"browse\" start_url=\"s\""));
    apply(noticeText("popup", R"(<popup id="t" type="notification"><title value="T"/></popup>)"));
    screen.clear();
    EXPECT_EQ(json(), R"({"window":"","parts":[],"tray":{"state":"","text":""},"statistics":{},"popups":[],)"
                      R"("toasts":[],"history":[{"number":1,"time":1700000000000,"text":"m"}]})");
    EXPECT_THAT(heard, ElementsAre("opened 1 s", "closed 1"));
}

TEST_F(LiveScreen, FindsControlsWhereverTheyAre) {
    apply(noticeText("setup", R"(<button id="part" label="1"/>)"));
    apply(dialog("d", R"(<layout><row><button id="dialog"/></row></layout>)"));
    apply(noticeText("popup", R"(<popup id="t" type="notification"><button id="toast"/></popup>)"));
    for (const char* id : {"part", "dialog", "toast"}) {
        ASSERT_NE(screen.findControl(id), nullptr) << id;
        EXPECT_EQ(screen.findControl(id)->id(), id);
    }
    EXPECT_EQ(screen.findControl("other"), nullptr);
}

TEST_F(LiveScreen, VersionCountsChanges) {
    std::uint64_t before = screen.version();
    apply(noticeText("apilog", "<x>y</x>", " tag=\"apilog\""));
    EXPECT_EQ(screen.version(), before);
    apply(noticeText("update", "<label id=\"l\"/>"));
    EXPECT_GT(screen.version(), before);
}

TEST_F(LiveScreen, NoticeThatIsNoneIsComplainedOf) {
    const std::uint64_t before = screen.version();
    for (const char* text : {"", "no xml", "<other/>", "<vtguiNotice type=\"dance\"/>"}) {
        EXPECT_NE(screen.apply(text, noon).value_or(""), "") << text;
    }
    EXPECT_EQ(screen.version(), before);
}

TEST_F(LiveScreen, BytesThatAreNoTextDoNotSpoilTheJson) {
    apply(noticeText("setup", "<label id=\"l\" value=\"a\xff\"/>"));
    EXPECT_THAT(json(), ::testing::HasSubstr(R"("value":"a?")"));
}

} // namespace
