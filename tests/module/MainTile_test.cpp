#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

namespace {

using boost::json::value;
using test::Lines;
using test::screens;
using test::textOf;
using test::with;
using test::withoutTrace;

class MainTile : public testing::Test {
protected:
    void SetUp() override { session.start(); }

    /// What a document puts on screen, less its copy in the host's log and the statistics that always go out.
    Lines status(const value& document) {
        return shown("StatusNotification", "statusnotification", document);
    }
    Lines dataplane(const value& document) {
        return shown("DataplaneNotification", "dataplanenotification", document);
    }

    Lines shown(const std::string& callback, const std::string& element, const value& document) {
        const Lines lines = screens(session.deliver(callback, textOf(document)));
        const Lines always{"apilog " + element, "stats-overview update", "stats-details update"};
        if (lines.size() < always.size() || !std::equal(always.begin(), always.end(), lines.begin())) {
            ADD_FAILURE() << testing::PrintToString(lines);
            return {};
        }
        return Lines(lines.begin() + 3, lines.end());
    }

    test::ModuleSession session;
};

const std::string initTile =
    "tile setup Transition \"Initializing. Please wait...\" \"Initializing. Please wait...\" []";
const std::string activeTile = "tile update Good \"Wren Gate is active.\" \"Active\" []";
const std::string requiredTile =
    "tile update Attention \"Registration is required to access secure resources.\" "
    "\"Registration required\" [Enroll]";
const std::string enrollToast = "toast \"Norvane Kestrel Suite\" \"Registration is required to access secure "
                                "resources.\" quill_toast_enroll_action_btn";
const std::string severalTile =
    "tile update Attention \"Some issues may be affecting secure resource access. Please "
    "review the provided details.\" \"Alerts available\" [Details]";
const std::string severalToast =
    "toast \"Some issues may be affecting secure resource access\" \"We have identified some issues that may "
    "affect "
    "your access to secure resources. Please take a moment to review the detailed information provided.\" "
    "quill_tile_details_action_toast_btn";

// The state decides.

TEST_F(MainTile, InitSetsEverythingUpAnew) {
    EXPECT_EQ(status(test::initStatusDocument()),
              (Lines{initTile, "adv-enrollment setup disabled", "adv-sync setup disabled \"None\"",
                     "stats-overview setup", "stats-details setup"}));
}

TEST_F(MainTile, ErrorShowsTheFirstAlert) {
    EXPECT_EQ(
        status(test::errorStatusDocument("no_service")),
        (Lines{"tile update Error \"Wren Gate service requires user approval.\" \"Wren Gate service error\" "
               "[Details]",
               "adv-enrollment update disabled", "adv-sync update disabled \"None\""}));
}

TEST_F(MainTile, NotEnrolledOffersToEnroll) {
    EXPECT_EQ(status(test::notEnrolledStatusDocument()),
              (Lines{requiredTile, enrollToast, "adv-enrollment update disabled",
                     "adv-sync update disabled \"None\""}));
}

TEST_F(MainTile, NotEnrolledAndManagedOffersNothing) {
    EXPECT_EQ(
        status(with(test::notEnrolledStatusDocument(), "/enrollment_choices/0/enroll_allowed", false)),
        (Lines{"tile update Attention \"Registration is being managed by your administrator to access secure "
               "resources.\" \"Registration managed\" []",
               "adv-enrollment update disabled managed", "adv-sync update disabled \"None\""}));
}

TEST_F(MainTile, NotEnrolledWithAnAlertCannotBegin) {
    EXPECT_EQ(
        status(with(test::notEnrolledStatusDocument(), "/posture_connectivity", "unreachable")),
        (Lines{"tile update Attention \"Cannot begin enrollment. Contact your IT help desk.\" \"Cannot begin "
               "enrollment. Contact your IT help desk.\" [Details]",
               "adv-enrollment update disabled", "adv-sync update disabled \"None\""}));
}

TEST_F(MainTile, EnrolledWithoutAlertIsActive) {
    const Lines shown = status(test::enrolledStatusDocument());
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[0], activeTile);
    EXPECT_EQ(shown[1], "adv-enrollment update enabled");
    EXPECT_EQ(shown[2].substr(0, 24), "adv-sync update enabled ");
}

TEST_F(MainTile, EnrolledWithBothListsOrNoneRendersStatisticsOnly) {
    auto both = test::enrolledStatusDocument();
    both.as_object()["enrollment_choices"] = test::notEnrolledStatusDocument().at("enrollment_choices");
    EXPECT_EQ(status(both), Lines{});
    EXPECT_EQ(
        withoutTrace(session.deliver("StatusNotification", textOf(with(both, "/substate", "x")))).back(),
        "log 2 PresentationPluginImpl::updateMainUi: Ignoring unexpected Status Notification");
    auto none = test::enrolledStatusDocument();
    none.as_object()["enrollments"] = value(boost::json::array());
    EXPECT_EQ(status(none), Lines{});
}

TEST_F(MainTile, AnyOtherStateRendersStatisticsOnly) {
    for (const std::string state : {"", "Active", "inactive_tnd", "errors"}) {
        EXPECT_EQ(status(with(test::notEnrolledStatusDocument(), "/state", boost::json::string(state))),
                  Lines{});
    }
}

TEST_F(MainTile, TwoEnrollmentsShowTheFirstAndSaySo) {
    auto two = test::enrolledStatusDocument();
    auto& enrollments = two.as_object()["enrollments"].as_array();
    enrollments.push_back(enrollments[0]);
    const Lines lines = withoutTrace(session.deliver("StatusNotification", textOf(two)));
    EXPECT_EQ(lines[1],
              "log 2 PresentationPluginImpl::renderStatsUpdates: The enrollment list has more than one item. "
              "Stats will report only the first enrollment entry.");
}

// Alerts while enrolled.

TEST_F(MainTile, OneAlertTellsItsMessageAndOffersDetails) {
    status(test::enrolledStatusDocument());
    const Lines shown =
        dataplane(with(with(test::dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", "Tile"),
                       "/dataplane_alerts/0/toast_message", "Toast"));
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[0], "tile update Attention \"Tile\" \"Access blocked\" [Details]");
    EXPECT_EQ(shown[1], "toast \"Access blocked\" \"Toast\" quill_tile_details_action_toast_btn");
}

TEST_F(MainTile, OneRequestToVerifyOffersVerify) {
    status(test::enrolledStatusDocument());
    const Lines shown = dataplane(test::dataplaneDocument(0, 1));
    EXPECT_EQ(shown[0],
              "tile update Attention \"Verify your identity to access corporate resources.\" \"Verify your "
              "identity\" [Verify]");
    EXPECT_EQ(shown[1],
              "toast \"Verify your identity\" \"Your organization requires you to verify your identity so "
              "that you can securely access corporate resources.\" quill_tile_verify_action_toast_btn");
}

TEST_F(MainTile, SeveralAlertsShareOneLineAndOneToast) {
    status(test::enrolledStatusDocument());
    const Lines shown = dataplane(test::dataplaneDocument(2, 0));
    EXPECT_EQ(shown[0], severalTile);
    EXPECT_EQ(shown[1], severalToast);
}

TEST_F(MainTile, SeveralAlertsWithoutToastTextsShowNone) {
    auto document = with(test::enrolledStatusDocument(), "/posture_connectivity", "unreachable");
    document = with(document, "/interceptor_connectivity", "load_failed");
    const Lines shown = status(document);
    EXPECT_EQ(shown[0], severalTile);
    EXPECT_EQ(shown[1], "adv-enrollment update enabled");
}

TEST_F(MainTile, AnAlertWithoutToastTitleShowsItsTileOnly) {
    const Lines shown = status(with(test::enrolledStatusDocument(), "/posture_connectivity", "unreachable"));
    EXPECT_EQ(shown[0],
              "tile update Attention \"Plover Desktop on your device is not responding. Contact your IT "
              "help desk.\" \"Plover Desktop error\" [Details]");
    EXPECT_EQ(shown[1], "adv-enrollment update enabled");
}

TEST_F(MainTile, TheSameAlertsAgainShowNoToastEvenWhereTheStateChanged) {
    status(test::enrolledStatusDocument());
    dataplane(test::dataplaneDocument(1, 0));
    // Elsewhere meanwhile, with the alerts as they were.
    status(with(test::enrolledStatusDocument(), "/state", "paused"));
    const Lines shown = status(test::enrolledStatusDocument());
    EXPECT_EQ(shown[1], "adv-enrollment update enabled") << testing::PrintToString(shown);
}

TEST_F(MainTile, AnAlertThatIsGoneAndComesBackIsNewAgain) {
    status(test::enrolledStatusDocument());
    dataplane(test::dataplaneDocument(1, 0));
    dataplane(test::dataplaneDocument(0, 0));
    EXPECT_EQ(dataplane(test::dataplaneDocument(1, 0))[1].substr(0, 5), "toast");
}

TEST_F(MainTile, AlertsInAnotherOrderAreNotNew) {
    status(test::enrolledStatusDocument());
    auto document = test::dataplaneDocument(2, 0);
    auto& alerts = document.as_object()["dataplane_alerts"].as_array();
    alerts[1].as_object()["timestamp"] = alerts[0].at("timestamp");
    dataplane(document);
    std::swap(alerts[0], alerts[1]);
    const Lines shown = dataplane(document);
    EXPECT_EQ(shown[0], severalTile);
    EXPECT_EQ(shown[1], "adv-enrollment update enabled");
}

// The message history.

TEST_F(MainTile, AnUnchangedStatusLineIsSentWithoutHistory) {
    const auto first = session.deliver("StatusNotification", textOf(test::enrolledStatusDocument()));
    const auto tileOf = [](const Lines& lines) {
        for (const std::string& line : test::only("notice", lines)) {
            if (line.find("simple_status") != std::string::npos) {
                return line;
            }
        }
        return std::string();
    };
    EXPECT_NE(tileOf(first).find("<log messagehistory=\"Wren Gate is active.\"/>"), std::string::npos);
    const auto again =
        session.deliver("StatusNotification", textOf(with(test::enrolledStatusDocument(), "/substate", "x")));
    EXPECT_NE(tileOf(again), "");
    EXPECT_EQ(tileOf(again).find("messagehistory"), std::string::npos);
}

TEST_F(MainTile, AStatusLineOfBlanksIsNoHistoryButStillTheNewLine) {
    status(test::enrolledStatusDocument());
    const auto blank = with(test::dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", "  \t");
    const Lines lines = session.deliver("DataplaneNotification", textOf(blank));
    const Lines logged = test::only("log 0 PresentationPluginImpl::updateTileStatusStrings:", lines);
    EXPECT_EQ(logged,
              Lines{"log 0 PresentationPluginImpl::updateTileStatusStrings: Tile Status updated to:   \t"});
    for (const std::string& line : test::only("notice", lines)) {
        EXPECT_EQ(line.find("messagehistory"), std::string::npos);
    }
    // The former line then is a change, and worth a line of history again.
    const Lines back = session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(0, 0)));
    EXPECT_TRUE(std::any_of(back.begin(), back.end(), [](const std::string& line) {
        return line.find("<log messagehistory=\"Wren Gate is active.\"/>") != std::string::npos;
    }));
}

// Advanced panels.

TEST_F(MainTile, EnrolledAndNotAllowedToUnenrollSaysWhy) {
    EXPECT_EQ(status(with(test::enrolledStatusDocument(), "/enrollments/0/unenroll_allowed", false))[1],
              "adv-enrollment update disabled managed");
}

TEST_F(MainTile, ADeadCertificateStopsConfigSyncHoweverRecentTheLastOne) {
    for (const std::string state : {"expired", "revoked", "rejected"}) {
        auto document =
            with(test::enrolledStatusDocument(), "/enrollments/0/certificate_status/certificate_state",
                 boost::json::string(state));
        document = with(document, "/enrollments/0/reenroll_allowed", false);
        EXPECT_EQ(status(document).back(), "adv-sync update disabled \"None\"") << state;
    }
    for (const std::string state : {"unknown", "ok", "internal_error"}) {
        const auto document =
            with(test::enrolledStatusDocument(), "/enrollments/0/certificate_status/certificate_state",
                 boost::json::string(state));
        EXPECT_EQ(status(document).back().substr(0, 24), "adv-sync update enabled ") << state;
    }
}

TEST_F(MainTile, AHealthyEnrollmentThatNeverSyncedShowsNoneWithTheButtonEnabled) {
    EXPECT_EQ(status(with(test::enrolledStatusDocument(),
                          "/enrollments/0/config_sync_status/last_config_sync_success", 0))
                  .back(),
              "adv-sync update enabled \"None\"");
}

TEST_F(MainTile, TheLastSyncIsShownInLocalTime) {
    EXPECT_EQ(status(with(test::enrolledStatusDocument(),
                          "/enrollments/0/config_sync_status/last_config_sync_success", 1704067200))
                  .back(),
              "adv-sync update enabled \"01/01/24 00:00:00\"");
}

// Buttons are bound by the first notices and stay so.

TEST_F(MainTile, OnPressStandsInSetupNoticesOnly) {
    const auto bindingsIn = [](const Lines& lines) {
        return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("OnPress=\"quill_tile_enroll_action_btn_OnPress\"") != std::string::npos;
        });
    };
    EXPECT_EQ(bindingsIn(session.deliver("StatusNotification", textOf(test::notEnrolledStatusDocument()))),
              0);
    EXPECT_EQ(bindingsIn(session.deliver("StatusNotification", textOf(test::initStatusDocument()))), 1);
}

} // namespace
