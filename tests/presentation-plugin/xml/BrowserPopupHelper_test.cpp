#include "presentation-plugin/xml/BrowserPopupHelper.h"

#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentNotifications.h"
#include "presentation-plugin/alerts/WrenAlert.h"
#include "tests/support/LogCapture.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

namespace {

const std::string title = "Norvane Kestrel Suite - Wren Gate";
const std::string agent = "Agent 1.0";

class BrowserPopup : public testing::Test {
protected:
    std::shared_ptr<CEventStore> events = std::make_shared<CEventStore>();
    BrowserPopupHelper popup{events, "wren_auth_browser", "dialog", "web", "close"};
};

/// A popup notice with the attributes of its web control and, below it, its close button.
std::string opened(const std::string& webAttributes, bool closable = true) {
    return "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"popup\">\n"
           "\t<popup timestamp=\"*\" id=\"dialog\" type=\"browser\" subtype=\"wren_auth_browser\" "
           "show=\"true\">\n"
           "\t\t<title value=\"Norvane Kestrel Suite - Wren Gate\"/>\n"
           "\t\t<webbrowser id=\"web\" " +
           webAttributes + "/>\n" +
           (closable ? "\t\t<closebutton id=\"close\" OnClose=\"close_OnClose\"/>\n" : "") +
           "\t</popup>\n</vtguiNotice>\n";
}

DataplaneAuthRequest_t dataplaneRequest() {
    DataplaneAuthRequest_t request;
    request.context_id = "ctx";
    request.start_url = "https://start?a=1&b=2";
    request.end_url = "https://end";
    request.cookie_name = "cookie";
    return request;
}

EnrollmentAuthRequest_t enrollmentRequest() {
    EnrollmentAuthRequest_t request;
    request.start_url = "https://start";
    request.end_url = "https://end";
    request.cookie_name = "cookie";
    return request;
}

TEST_F(BrowserPopup, DataplaneAuthBrowsesForTheCookie) {
    EXPECT_EQ(
        test::maskTimestamps(popup.generateDataplaneAuthPopup(title, agent, dataplaneRequest())),
        opened("operation=\"browse_for_cookie\" start_url=\"https://start?a=1&amp;b=2\" "
               "final_url=\"https://end\" cookie_name=\"cookie\" focus=\"true\" user_agent=\"Agent 1.0\" "
               "OnError=\"web_OnError\" OnErrorID=\"web\" OnPress=\"web_OnPress\" OnPressID=\"web\""));
    EXPECT_EQ(events->Lookup("web_OnPress"), EventStoreId::DATAPLANE_AUTH_BROWSER_END_URL_REACHED);
    EXPECT_EQ(events->Lookup("web_OnError"), EventStoreId::DATAPLANE_AUTH_BROWSER_ERROR);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::DATAPLANE_AUTH_BROWSER_CLOSE);
}

TEST_F(BrowserPopup, EnrollmentAuthBrowsesForTheCookie) {
    EXPECT_EQ(test::maskTimestamps(popup.generateEnrollmentAuthPopup(title, agent, enrollmentRequest())),
              opened("operation=\"browse_for_cookie\" start_url=\"https://start\" final_url=\"https://end\" "
                     "cookie_name=\"cookie\" focus=\"true\" user_agent=\"Agent 1.0\" OnError=\"web_OnError\" "
                     "OnErrorID=\"web\" OnPress=\"web_OnPress\" OnPressID=\"web\""));
    EXPECT_EQ(events->Lookup("web_OnPress"), EventStoreId::ENROLLMENT_BROWSER_END_URL_REACHED);
    EXPECT_EQ(events->Lookup("web_OnError"), EventStoreId::ENROLLMENT_BROWSER_ERROR);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::ENROLLMENT_BROWSER_CLOSE);
}

TEST_F(BrowserPopup, ProgressShowsTheLocalPage) {
    // {"flow":"enrollment","value":{"state":"progress","title":"Enrolling...","percent_complete":0}}
    EXPECT_EQ(
        test::maskTimestamps(popup.generateEnrollmentProgressPopup(title, agent, "Enrolling...")),
        opened(
            "operation=\"browse_for_local_content\" start_url=\"wren/v1/index.html\" focus=\"true\" "
            "user_agent=\"Agent 1.0\" event_dispatch_name=\"update-flow\" "
            "event_dispatch_detail=\"eyJmbG93IjoiZW5yb2xsbWVudCIsInZhbHVlIjp7InN0YXRlIjoicHJvZ3Jlc3MiLCJ0aX"
            "RsZSI6IkVucm9sbGluZy4uLiIsInBlcmNlbnRfY29tcGxldGUiOjB9fQ==\" OnError=\"web_OnError\" "
            "OnErrorID=\"web\""));
    EXPECT_EQ(events->Lookup("web_OnPress"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(events->Lookup("web_OnBrowseEvent"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(events->Lookup("web_OnError"), EventStoreId::ENROLLMENT_BROWSER_ERROR);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::ENROLLMENT_BROWSER_CLOSE);
}

// {"flow":"alert","value":{"alerts":[]}}
const std::string noAlerts = "eyJmbG93IjoiYWxlcnQiLCJ2YWx1ZSI6eyJhbGVydHMiOltdfX0=";

TEST_F(BrowserPopup, AlertPopupShowsTheLocalPageAndHearsIt) {
    EXPECT_EQ(test::maskTimestamps(popup.generateAlertPopup(title, agent, {})),
              opened("operation=\"browse_for_local_content\" start_url=\"wren/v1/index.html\" focus=\"true\" "
                     "user_agent=\"Agent 1.0\" event_dispatch_name=\"update-flow\" event_dispatch_detail=\"" +
                     noAlerts +
                     "\" OnBrowseEvent=\"web_OnBrowseEvent\" OnBrowseEventID=\"web\" "
                     "disable_browser_controls=\"true\" OnError=\"web_OnError\" OnErrorID=\"web\""));
    EXPECT_EQ(events->Lookup("web_OnBrowseEvent"), EventStoreId::LOCAL_BROWSE_EVENT);
    EXPECT_EQ(events->Lookup("web_OnError"), EventStoreId::ALERT_BROWSER_ERROR);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::ALERT_BROWSER_CLOSE);
}

TEST_F(BrowserPopup, AlertUpdateDispatchesWithoutStartUrlAndUserAgent) {
    EXPECT_EQ(test::maskTimestamps(popup.generateAlertUpdate(title, {})),
              opened("operation=\"dispatch_event\" focus=\"true\" event_dispatch_name=\"update-flow\" "
                     "event_dispatch_detail=\"" +
                     noAlerts +
                     "\" OnBrowseEvent=\"web_OnBrowseEvent\" OnBrowseEventID=\"web\" "
                     "disable_browser_controls=\"true\" OnError=\"web_OnError\" OnErrorID=\"web\""));
    EXPECT_EQ(events->Lookup("web_OnBrowseEvent"), EventStoreId::LOCAL_BROWSE_EVENT);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::ALERT_BROWSER_CLOSE);
}

TEST_F(BrowserPopup, AnEmptyTextLeavesItsAttributeOut) {
    DataplaneAuthRequest_t request = dataplaneRequest();
    request.cookie_name.clear();
    request.end_url.clear();
    const std::string text = popup.generateDataplaneAuthPopup(title, "", request);
    EXPECT_EQ(text.find("cookie_name"), std::string::npos);
    EXPECT_EQ(text.find("final_url"), std::string::npos);
    EXPECT_EQ(text.find("user_agent"), std::string::npos);
}

TEST_F(BrowserPopup, OpeningAgainReplacesTheEvents) {
    popup.generateEnrollmentAuthPopup(title, agent, enrollmentRequest());
    popup.generateEnrollmentProgressPopup(title, agent, "x");
    EXPECT_EQ(events->Lookup("web_OnPress"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::ENROLLMENT_BROWSER_CLOSE);
}

TEST_F(BrowserPopup, ClosingBeforeTheFirstPopupIsOnlyLogged) {
    const test::LogCapture log;
    EXPECT_EQ(popup.generateBrowserPopupClose(), "");
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Can't close uninitialized popup with id dialog"});
}

TEST_F(BrowserPopup, ShowingBeforeTheFirstPopupIsOnlyLogged) {
    const test::LogCapture log;
    EXPECT_EQ(popup.generateBrowserShowExisting(), "");
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Can't show uninitialized popup with id dialog"});
}

TEST_F(BrowserPopup, ClosingForgetsTheEventsAndMayBeRepeated) {
    const std::string disposed =
        "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"popup\">\n"
        "\t<popup timestamp=\"*\" id=\"dialog\" dispose=\"true\"/>\n</vtguiNotice>\n";
    popup.generateEnrollmentAuthPopup(title, agent, enrollmentRequest());
    EXPECT_EQ(test::maskTimestamps(popup.generateBrowserPopupClose()), disposed);
    EXPECT_EQ(events->Lookup("close_OnClose"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(test::maskTimestamps(popup.generateBrowserPopupClose()), disposed);
}

TEST_F(BrowserPopup, ShowingAgainTouchesNoEvent) {
    popup.generateEnrollmentAuthPopup(title, agent, enrollmentRequest());
    EXPECT_EQ(test::maskTimestamps(popup.generateBrowserShowExisting()),
              "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"popup\">\n"
              "\t<popup timestamp=\"*\" id=\"dialog\" type=\"browser\" subtype=\"wren_auth_browser\" "
              "show=\"true\"/>\n</vtguiNotice>\n");
    EXPECT_EQ(events->Lookup("web_OnPress"), EventStoreId::ENROLLMENT_BROWSER_END_URL_REACHED);
}

TEST(PopupOperation, EveryOperationHasItsWord) {
    EXPECT_STREQ(popupOperationLiteral(PopupOperation::BrowseForCookie), "browse_for_cookie");
    EXPECT_STREQ(popupOperationLiteral(PopupOperation::Browse), "browse");
    EXPECT_STREQ(popupOperationLiteral(PopupOperation::BrowseForLocalContent), "browse_for_local_content");
    EXPECT_STREQ(popupOperationLiteral(PopupOperation::DispatchEvent), "dispatch_event");
    EXPECT_STREQ(popupOperationLiteral(static_cast<PopupOperation>(4)), "browse");
}

} // namespace
