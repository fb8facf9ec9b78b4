#include "host/strict/NoticeVocabulary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> faultsOf(const std::string& xml) {
    std::vector<std::string> faults;
    for (const host::Violation& violation : host::vocabularyFaults(host::parseNotice(xml))) {
        faults.push_back(std::string(violation.name()) + ": " + violation.text);
    }
    return faults;
}

std::string noticeWith(const std::string& attributes, const std::string& content = {}) {
    return "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" " + attributes + ">" + content +
           "</vtguiNotice>";
}

std::string screenWith(const std::string& content) { return noticeWith("type=\"update\"", content); }
std::string popupWith(const std::string& attributes, const std::string& content = {}) {
    return noticeWith("type=\"popup\"", "<popup " + attributes + ">" + content + "</popup>");
}
std::string logWith(const std::string& content) { return noticeWith("type=\"apilog\"", content); }

TEST(NoticeVocabulary, ModuleIsTheModules) {
    EXPECT_THAT(faultsOf("<vtguiNotice type=\"update\"/>"), ElementsAre("foreign-module: \"module\" = \"\""));
    EXPECT_THAT(faultsOf("<vtguiNotice module=\"other\" type=\"update\"/>"),
                ElementsAre("foreign-module: \"module\" = \"other\""));
}

TEST(NoticeVocabulary, NoticeTypes) {
    for (const std::string type :
         {"setup", "popup", "update", "quit", "apilog", "refresh_ui", "refresh_approval_wizard_ui"}) {
        EXPECT_THAT(faultsOf(noticeWith("type=\"" + type + "\"")), IsEmpty()) << type;
    }
    EXPECT_THAT(faultsOf(noticeWith("type=\"Setup\"")),
                ElementsAre("bad-value: \"type\" = \"Setup\" of <vtguiNotice>"));
    EXPECT_THAT(faultsOf(noticeWith("")), ElementsAre("missing-attribute: \"type\" of <vtguiNotice>"));
}

TEST(NoticeVocabulary, TrayStates) {
    for (const std::string state :
         {"Error", "Attention", "NonCompliant", "Transition", "Neutral", "Trusted", "Good", "Paused"}) {
        EXPECT_THAT(faultsOf(noticeWith("type=\"update\" state=\"" + state + "\"")), IsEmpty()) << state;
        EXPECT_THAT(faultsOf(popupWith("id=\"p\" state=\"" + state + "\"")), IsEmpty()) << state;
    }
    EXPECT_THAT(faultsOf(noticeWith("type=\"update\" state=\"good\"")),
                ElementsAre("bad-value: \"state\" = \"good\" of <vtguiNotice>"));
}

TEST(NoticeVocabulary, Controls) {
    for (const std::string name :
         {"label", "autosizebutton", "checkbox", "combobox", "textbox", "passwordbox", "textarea",
          "radiogroup", "menuitem", "progressmeter", "closebutton", "listbox", "timer"}) {
        EXPECT_THAT(faultsOf(screenWith("<" + name + " id=\"c\"/>")), IsEmpty()) << name;
    }
    EXPECT_THAT(faultsOf(screenWith(R"(<button id="c" label=""/><traystate id="t" value=""/>)"
                                    R"(<webbrowser id="w" operation="browse"/>)"
                                    R"(<outlinelistbox id="o" updaterows="true" num_columns="2"/>)")),
                IsEmpty());
    EXPECT_THAT(faultsOf(screenWith("<Label id=\"c\"/>")),
                ElementsAre("unknown-element: <Label> in <vtguiNotice>"));
    EXPECT_THAT(faultsOf(screenWith("<label/>")), ElementsAre("missing-attribute: \"id\" of <label>"));
    EXPECT_THAT(faultsOf(screenWith("<label id=\"\"/>")), ElementsAre("bad-value: \"id\" = \"\" of <label>"));
}

TEST(NoticeVocabulary, EventsWithTheirParameters) {
    for (const std::string event : {"OnPress", "OnSelect", "OnDoubleClick", "OnPressEnter", "OnOK",
                                    "OnCancel", "OnClose", "OnError", "OnBrowseEvent"}) {
        EXPECT_TRUE(host::isEventAttribute(event));
        EXPECT_FALSE(host::isEventAttribute(event + "ID"));
        EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" " + event + "=\"e\" " + event + "ID=\"c\"/>")),
                    IsEmpty());
        EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" " + event + "=\"\"/>")),
                    ElementsAre("bad-value: \"" + event + "\" = \"\" of <label> c"));
    }
    EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" OnHover=\"e\"/>")),
                ElementsAre("unknown-attribute: \"OnHover\" of <label> c"));
    EXPECT_THAT(faultsOf(screenWith("<log messagehistory=\"m\" OnPress=\"e\"/>")),
                ElementsAre("unknown-attribute: \"OnPress\" of <log>"));
}

TEST(NoticeVocabulary, Flags) {
    for (const std::string attribute : {"hidden", "disabled"}) {
        EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" " + attribute + "=\"true\"/>")), IsEmpty());
        EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" " + attribute + "=\"yes\"/>")),
                    ElementsAre("bad-value: \"" + attribute + "\" = \"yes\" of <label> c"));
    }
    for (const std::string attribute : {"focus", "disable_browser_controls"}) {
        const auto browser = [&](const std::string& value) {
            return screenWith("<webbrowser id=\"w\" operation=\"browse\" " + attribute + "=\"" + value +
                              "\"/>");
        };
        EXPECT_THAT(faultsOf(browser("false")), IsEmpty());
        EXPECT_THAT(faultsOf(browser("0")),
                    ElementsAre("bad-value: \"" + attribute + "\" = \"0\" of <webbrowser> w"));
    }
    for (const std::string attribute : {"show", "dispose"}) {
        EXPECT_THAT(faultsOf(popupWith("id=\"p\" " + attribute + "=\"true\"")), IsEmpty());
        EXPECT_THAT(faultsOf(popupWith("id=\"p\" " + attribute + "=\"\"")),
                    ElementsAre("bad-value: \"" + attribute + "\" = \"\" of <popup> p"));
    }
    EXPECT_THAT(faultsOf(screenWith("<application show=\"maybe\"/>")),
                ElementsAre("bad-value: \"show\" = \"maybe\" of <application>"));
}

TEST(NoticeVocabulary, Popups) {
    for (const std::string type : {"custom", "notification", "browser"}) {
        EXPECT_THAT(faultsOf(popupWith("id=\"p\" type=\"" + type + "\"")), IsEmpty());
    }
    for (const std::string subtype : {"wren_alert_browser", "wren_auth_browser"}) {
        EXPECT_THAT(faultsOf(popupWith("id=\"p\" subtype=\"" + subtype + "\"")), IsEmpty());
    }
    EXPECT_THAT(faultsOf(popupWith("id=\"p\" severity=\"info\"")), IsEmpty());
    EXPECT_THAT(faultsOf(popupWith("id=\"p\" type=\"modal\" subtype=\"x\" severity=\"loud\"")),
                ElementsAre("bad-value: \"type\" = \"modal\" of <popup> p",
                            "bad-value: \"subtype\" = \"x\" of <popup> p",
                            "bad-value: \"severity\" = \"loud\" of <popup> p"));
    EXPECT_THAT(faultsOf(popupWith("id=\"p\"", "<title value=\"T\"/><text value=\"t\"/><layout><row>"
                                               "<label id=\"l\"/></row></layout>")),
                IsEmpty());
    EXPECT_THAT(faultsOf(popupWith("id=\"p\"", "<row/>")), ElementsAre("unknown-element: <row> in <popup>"));
}

TEST(NoticeVocabulary, BrowserOperations) {
    for (const std::string operation :
         {"browse_for_cookie", "browse", "browse_for_local_content", "dispatch_event"}) {
        EXPECT_THAT(faultsOf(popupWith("id=\"p\"", "<webbrowser id=\"w\" operation=\"" + operation + "\"/>")),
                    IsEmpty());
    }
    EXPECT_THAT(faultsOf(popupWith("id=\"p\"", "<webbrowser id=\"w\" operation=\"surf\" final_url=\"\"/>")),
                ElementsAre("bad-value: \"operation\" = \"surf\" of <webbrowser> w",
                            "bad-value: \"final_url\" = \"\" of <webbrowser> w"));
}

TEST(NoticeVocabulary, Lists) {
    const auto list = [](const std::string& columns, const std::string& content) {
        return screenWith("<outlinelistbox id=\"o\" updaterows=\"false\" num_columns=\"" + columns + "\">" +
                          content + "</outlinelistbox>");
    };
    EXPECT_THAT(faultsOf(list("2", "<listgroup id=\"g\"><listrowcolumn label=\"G\"/><listrow id=\"r\">"
                                   "<listrowcolumn label=\"\"/></listrow></listgroup>")),
                IsEmpty());
    EXPECT_THAT(faultsOf(list("two", "<listrow id=\"r\"/>")),
                ElementsAre("bad-value: \"num_columns\" = \"two\" of <outlinelistbox> o",
                            "unknown-element: <listrow> in <outlinelistbox>"));
}

TEST(NoticeVocabulary, LogNotices) {
    for (const std::string name :
         {"statusnotification", "enrollmentstatusnotification", "enrollmentauthrequest",
          "unenrollmentstatusnotification", "dataplanenotification"}) {
        EXPECT_THAT(faultsOf(logWith("<" + name + ">{}</" + name + ">")), IsEmpty()) << name;
        EXPECT_THAT(faultsOf(screenWith("<" + name + "/>")),
                    ElementsAre("unknown-element: <" + name + "> in <vtguiNotice>"));
    }
    EXPECT_THAT(faultsOf(logWith("<label id=\"l\"/>")), ElementsAre("unknown-element: <label> in <apilog>"));
    for (const std::string kind : {"ENROLL_ACTION",
                                   "ENROLL_TOAST_ACTION",
                                   "ENROLL_CANCEL_ACTION",
                                   "UNENROLL_ACTION",
                                   "CONFIG_SYNC_ACTION",
                                   "ENROLLMENT_BROWSER_END_URL_REACHED",
                                   "ENROLLMENT_BROWSER_CLOSE",
                                   "ENROLLMENT_BROWSER_ERROR",
                                   "DATAPLANE_AUTH_BROWSER_END_URL_REACHED",
                                   "DATAPLANE_AUTH_BROWSER_CLOSE",
                                   "DATAPLANE_AUTH_BROWSER_ERROR",
                                   "ALERT_BROWSER_CLOSE",
                                   "ALERT_BROWSER_ERROR",
                                   "ERROR_DETAILS_ACTION",
                                   "ERROR_DETAILS_TOAST_ACTION",
                                   "AUTH_VERIFY_ACTION",
                                   "AUTH_VERIFY_TOAST_ACTION",
                                   "ERROR_POPUP_CLOSE",
                                   "LOCAL_BROWSE_EVENT",
                                   "EVENT_INVALID"}) {
        EXPECT_THAT(faultsOf(logWith("<eventnotification id=\"e\" eventstore_id=\"" + kind + "\"/>")),
                    IsEmpty())
            << kind;
    }
    EXPECT_THAT(faultsOf(logWith("<eventnotification id=\"e\" eventstore_id=\"0\"/>")),
                ElementsAre("bad-value: \"eventstore_id\" = \"0\" of <eventnotification> e"));
}

TEST(NoticeVocabulary, AttributeTwiceIsNoAttribute) {
    EXPECT_THAT(faultsOf(screenWith("<label id=\"c\" value=\"1\" value=\"2\"/>")),
                ElementsAre("unknown-attribute: \"value\" twice of <label> c"));
}

} // namespace
