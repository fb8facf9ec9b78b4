#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

// Journeys that end with one request, told with every line that comes of them.

namespace {

using test::Lines;
using test::textOf;

class Journey : public testing::Test {
protected:
    void SetUp() override {
        session.start();
        session.deliver("StatusNotification", textOf(test::enrolledStatusDocument()));
    }

    void TearDown() override { EXPECT_EQ(session.brokenRules(), Lines()); }

    test::ModuleSession session;
};

std::string told(const std::string& id, const std::string& kind) {
    return "notice <vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"apilog\" "
           "tag=\"apilog\" "
           "timestamp=\"*\">\n\t<eventnotification id=\"" +
           id + "\" eventstore_id=\"" + kind + "\"/>\n</vtguiNotice>\n";
}

std::string traced(const std::string& machine, const std::string& event) {
    return "log 0 QuillSmlLogger_t::log_process_event: [struct " + machine + "][process_event] struct " +
           event;
}

const std::string completion = traced("PresentationPlugin_s", "boost::ext::sml::v1_1_11::back::anonymous");

TEST_F(Journey, ConfigSync) {
    EXPECT_EQ(session.press("quill_config_sync_btn"),
              (Lines{told("quill_config_sync_btn_OnPress", "CONFIG_SYNC_ACTION"),
                     traced("PresentationPlugin_s", "PerformConfigSync_e"),
                     traced("Started_s", "PerformConfigSync_e"),
                     "log 0 ApiPerformConfigSync_a::operator (): state machine action ApiPerformConfigSync_a",
                     R"(api PerformConfigSync {"version":"1","enrollment_id":"enrollment-1"})", completion,
                     "result 0"}));
}

TEST_F(Journey, PostureReport) {
    session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(1, 0)));
    session.press("quill_tile_details_action_btn");
    EXPECT_EQ(
        session.event("<vtguiEvent id=\"quill_alert_browser_web_control_OnBrowseEvent\"><webbrowser "
                      "id=\"quill_alert_browser_web_control\" type=\"posture-update\"/></vtguiEvent>"),
        (Lines{
            told("quill_alert_browser_web_control_OnBrowseEvent", "LOCAL_BROWSE_EVENT"),
            "log 1 PresentationPluginImpl::EventNotification: Handling local browser event notification",
            "log 0 PresentationPluginImpl::EventNotification: Local browser event type \"posture-update\" "
            "received",
            traced("PresentationPlugin_s", "TriggerPostureReports_e"),
            traced("Started_s", "TriggerPostureReports_e"),
            "log 0 ApiTriggerPostureReports_a::operator (): state machine action ApiTriggerPostureReports_a",
            R"(api TriggerPostureReports {"version":"1"})", completion, "result 0"}));
}

} // namespace
