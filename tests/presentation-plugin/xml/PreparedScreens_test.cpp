#include "presentation-plugin/xml/PreparedScreens.h"

#include "common/PluginIdentity.h"
#include "common2/util/LocalTimeText.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "presentation-plugin/xml/StatisticsComposition.h"
#include "tests/support/Documents.h"
#include "xml/XmlUINotice.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Texts that the printer must treat with care, of several lengths.
const std::vector<std::string> awkwardTexts{
    "plain",
    "",
    " ",
    "<a> & 'b'",
    "say \"it\"",
    "\"it's\"",
    std::string("cut\0off", 7),
    "\u00E9\u4E2D",
    "a value that is longer than any block & holds <special> characters at its end\""};

/// Both ways to one notice: the text spliced, and the text of the tree with the same time stamp.
class PreparedScreensTest : public testing::Test {
protected:
    template <class Compose>
    std::string printed(UiNoticeType type, const char* tag, Compose compose) {
        XmlUINotice notice(type, tag, pluginIdentity::identity);
        notice.setTimestamp(timestamp().c_str());
        compose(notice);
        return notice.serialize();
    }

    template <class Compose>
    std::string printedUpdate(Compose compose) {
        return printed(UiNoticeType::Update, nullptr, compose);
    }

    std::string timestamp() const {
        const std::string_view name = "timestamp=\"";
        const std::string_view text = out.view();
        const std::size_t begin = text.find(name) + name.size();
        return std::string(text.substr(begin, text.find('"', begin) - begin));
    }

    void expectTile(const TileContent& content, bool tellHistory) {
        out.clear();
        screens.tile(out, content, tellHistory);
        EXPECT_EQ(out.view(), printedUpdate([&](XmlUINotice& notice) {
                      composeTile(notice, content, tellHistory, events);
                  }));
    }

    void expectStatistics(const StatusNotification_t& status) {
        out.clear();
        screens.statsOverview(out, status);
        EXPECT_EQ(out.view(),
                  printedUpdate([&](XmlUINotice& notice) { composeStatsOverview(notice, status); }));
        out.clear();
        screens.statsDetails(out, status);
        EXPECT_EQ(out.view(),
                  printedUpdate([&](XmlUINotice& notice) { composeStatsDetails(notice, status); }));
    }

    PreparedScreens screens;
    common2::TextBuffer out;
    CEventStore events;
};

TEST_F(PreparedScreensTest, IsStampedWithThePresentTime) {
    screens.apiLog(out, "event", "text");
    EXPECT_EQ(timestamp().size(), common2::localTimeText(1700000000, L"%c").size());
}

TEST_F(PreparedScreensTest, ApiLogReadsAsTheTreeDoes) {
    for (const char* element : {"statusnotification", "dataplanenotification", "statusnotification"}) {
        for (const std::string& text :
             {test::textOf(test::enrolledStatusDocument()), std::string("<&>'\"")}) {
            out.clear();
            screens.apiLog(out, element, text);
            EXPECT_EQ(out.view(), printed(UiNoticeType::ApiLog, "apilog", [&](XmlUINotice& notice) {
                          notice.addNode(element).setValue(text.c_str());
                      }));
        }
    }
}

TEST_F(PreparedScreensTest, TileReadsAsTheTreeDoesForEveryText) {
    for (const std::string& status : awkwardTexts) {
        for (const std::string& trayText : awkwardTexts) {
            expectTile({.status = status.c_str(), .trayText = trayText.c_str()}, false);
            expectTile({.status = status.c_str(), .trayText = trayText.c_str()}, true);
        }
    }
}

TEST_F(PreparedScreensTest, TileReadsAsTheTreeDoesForEveryStateOfItsSwitches) {
    for (const UiTrayState state : {UiTrayState::Error, UiTrayState::Good, UiTrayState::Attention}) {
        for (ButtonState TileContent::*button :
             {&TileContent::enroll, &TileContent::cancel, &TileContent::details, &TileContent::verify}) {
            TileContent content{.status = "status", .trayText = "tray", .trayState = state};
            content.*button = offeredButton;
            expectTile(content, false);
            content.*button = {.hidden = false, .disabled = true};
            expectTile(content, true);
        }
    }
}

TEST_F(PreparedScreensTest, EnrollmentGroupReadsAsTheTreeDoes) {
    for (const AdvEnrollmentGroup& group :
         {advEnrollmentActive(true), advEnrollmentActive(false), advEnrollmentInactive(true),
          advEnrollmentInactive(false), advEnrollmentSetup(), advEnrollmentActive(true)}) {
        out.clear();
        screens.advEnrollment(out, group);
        EXPECT_EQ(out.view(), printedUpdate([&](XmlUINotice& notice) {
                      composeAdvEnrollmentGroup(notice, group, events);
                  }));
    }
}

TEST_F(PreparedScreensTest, ConfigSyncGroupReadsAsTheTreeDoes) {
    std::vector<AdvConfigSyncGroup> groups{advConfigSyncInactive(), advConfigSyncSetup()};
    for (const std::string& text : awkwardTexts) {
        groups.push_back(advConfigSyncActive(text.c_str()));
    }
    groups.push_back(advConfigSyncInactive());
    for (const AdvConfigSyncGroup& group : groups) {
        out.clear();
        screens.advConfigSync(out, group);
        EXPECT_EQ(out.view(), printedUpdate([&](XmlUINotice& notice) {
                      composeAdvConfigSyncGroup(notice, group, events);
                  }));
    }
}

TEST_F(PreparedScreensTest, StatisticsReadAsTheTreeDoes) {
    expectStatistics(test::enrolledStatus());
    expectStatistics(test::notEnrolledStatus());
    expectStatistics(test::initStatus());
    expectStatistics(test::errorStatus());
    expectStatistics(test::enrolledStatus());
}

TEST_F(PreparedScreensTest, EveryValueOfTheStatisticsStandsInItsPlace) {
    StatusNotification_t status = test::enrolledStatus();
    status.interceptor_connectivity = InterceptorConnectivity::RebootRequired;
    Enrollment_t& enrollment = status.enrollments.front();
    enrollment.certificate_status.certificate_state = CertificateState::Expired;
    enrollment.certificate_status.certificate_renewal_status = CertificateRenewalStatus::Waiting;
    enrollment.config_sync_status.server_connectivity = ServerConnectivity::Unreachable;
    enrollment.dataplane_status.server_connectivity = ServerConnectivity::BadResponse;
    expectStatistics(status);
}

TEST_F(PreparedScreensTest, StatisticsReadAsTheTreeDoesForEveryText) {
    for (const std::string& text : awkwardTexts) {
        StatusNotification_t status = test::enrolledStatus();
        status.state = text;
        Enrollment_t& enrollment = status.enrollments.front();
        enrollment.certificate_status.certificate_urns.user_name = text;
        enrollment.dataplane_status.proxy_configs = {{.label = text, .status = text}};
        enrollment.network_status.fingerprints = {{.label = text}};
        expectStatistics(status);
    }
}

TEST_F(PreparedScreensTest, StatisticsReadAsTheTreeDoesForEveryNumberOfEntries) {
    for (const std::size_t proxies : {0u, 1u, 2u, 40u}) {
        for (const std::size_t fingerprints : {0u, 1u, 2u, 40u}) {
            StatusNotification_t status = test::enrolledStatus();
            Enrollment_t& enrollment = status.enrollments.front();
            enrollment.dataplane_status.proxy_configs.assign(proxies, {.label = "proxy", .status = "active"});
            enrollment.network_status.fingerprints.assign(
                fingerprints, {.label = "network", .status = FingerprintStatus::Matched});
            expectStatistics(status);
        }
    }
}

TEST_F(PreparedScreensTest, StatisticsReadAsTheTreeDoesForEveryTime) {
    for (const QuillTimePoint time :
         {0ll, 1ll, -1ll, -10'000'000ll, 17'000'000'000'000'000ll, 10'000'000ll}) {
        StatusNotification_t status = test::enrolledStatus();
        Enrollment_t& enrollment = status.enrollments.front();
        enrollment.enrollment_time = time;
        enrollment.config_sync_status.last_config_sync_success = time + 20'000'000;
        enrollment.certificate_status.certificate_expiration_time = time;
        expectStatistics(status);
    }
}

TEST_F(PreparedScreensTest, StatisticsReadAsTheTreeDoesForValuesOutsideTheirTables) {
    StatusNotification_t status = test::enrolledStatus();
    status.interceptor_connectivity = static_cast<InterceptorConnectivity>(99);
    Enrollment_t& enrollment = status.enrollments.front();
    enrollment.certificate_status.certificate_state = static_cast<CertificateState>(99);
    enrollment.network_status.fingerprints = {{.label = "n", .status = static_cast<FingerprintStatus>(9)}};
    expectStatistics(status);
}

} // namespace
