// What no single row tells: events that the machine raises itself, events that nobody takes, failures.
#include "tests/presentation-plugin/MachineTest.h"

namespace {

using namespace machine_test;

// Events that the machine raises itself, told with the whole trace.

TEST_F(MachineTest, AnErrorStatusRendersBeforeTheEnrollRegionHearsOfTheAbort) {
    start();
    raise(initiateEnrollment);
    EXPECT_TRUE(raise(status("error")));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                            "MainEnrolling_s -> MainActive_s", "CacheStatusNotificationAndUpdateUI_a",
                            "root anonymous", "root AbortEnrollment_e", "sub AbortEnrollment_e",
                            "EnrollRequestPending_s -> EnrollIdle_s", "DisplayEnrollmentAborted_a",
                            "root anonymous"}));
}

TEST_F(MachineTest, EveryEnrollStateButIdleHearsOfTheAbort) {
    const std::vector<std::pair<std::function<void(MachineTest&)>, std::string>> states{
        {enrolling, "EnrollRequestPending_s"},
        {enrollingStarted, "EnrollStarted_s"},
        {authenticating, "EnrollAuthenticating_s"},
        {cancelling, "EnrollCancelPending_s"},
        {progressing, "EnrollProgress_s"}};
    start();
    for (const auto& [arrange, state] : states) {
        arrange(*this);
        EXPECT_TRUE(raise(status("error"))) << state;
        EXPECT_NE(std::find(trace.begin(), trace.end(), state + " -> EnrollIdle_s"), trace.end()) << state;
        EXPECT_EQ(plugin.calls,
                  (Lines{"cacheStatusAndUpdateUI(error)", "displayEnrollmentStatusInternal(Aborted)"}))
            << state;
    }
}

TEST_F(MachineTest, BothUnenrollStatesHearOfTheAbort) {
    start();
    unenrolling(*this);
    EXPECT_TRUE(raise(status("error")));
    EXPECT_NE(std::find(trace.begin(), trace.end(), "UnenrollRequestPending_s -> UnenrollIdle_s"),
              trace.end());
    unenrollingStarted(*this);
    EXPECT_TRUE(raise(status("error")));
    EXPECT_NE(std::find(trace.begin(), trace.end(), "UnenrollStarted_s -> UnenrollIdle_s"), trace.end());
}

TEST_F(MachineTest, ACompletedEnrollmentRendersWhatWasCached) {
    start();
    progressing(*this);
    EXPECT_TRUE(raise(enrollComplete));
    EXPECT_EQ(trace, (Lines{"root EnrollmentStatusNotification_e", "sub EnrollmentStatusNotification_e",
                            "EnrollProgress_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a", "root anonymous",
                            "root EnrollmentDone_e", "sub EnrollmentDone_e",
                            "MainEnrolling_s -> MainActive_s", "OnlyUpdateUI_a", "root anonymous"}));
}

TEST_F(MachineTest, ACompletedUnenrollmentRendersWhatWasCached) {
    start();
    unenrollingStarted(*this);
    EXPECT_TRUE(raise(unenrollComplete));
    EXPECT_EQ(trace, (Lines{"root UnenrollmentStatusNotification_e", "sub UnenrollmentStatusNotification_e",
                            "UnenrollStarted_s -> UnenrollIdle_s", "DisplayUnenrollmentStatus_a",
                            "root anonymous", "root UnenrollmentDone_e", "sub UnenrollmentDone_e",
                            "MainUnenrolling_s -> MainActive_s", "OnlyUpdateUI_a", "root anonymous"}));
}

TEST_F(MachineTest, AChangedAlertListReachesTheAlertRegionWithinTheSameEvent) {
    start();
    plugin.alertsChange = true;
    plugin.noAlerts = false;
    EXPECT_TRUE(raise(status("active")));
    EXPECT_EQ(trace,
              (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                     "CacheStatusNotificationAndUpdateUI_a", "sub AlertListChanged_e", "root anonymous"}));
    EXPECT_TRUE(raise(dataplane()));
    EXPECT_EQ(trace,
              (Lines{"root DataplaneNotification_e", "sub DataplaneNotification_e",
                     "CacheDataplaneNotificationAndUpdateUI_a", "sub AlertListChanged_e", "root anonymous"}));
}

TEST_F(MachineTest, AChangedAlertListUpdatesAnOpenDialog) {
    start();
    showingDialog(*this);
    plugin.alertsChange = true;
    plugin.noAlerts = false;
    EXPECT_TRUE(raise(status("active")));
    EXPECT_EQ(plugin.calls, (Lines{"cacheStatusAndUpdateUI(active)", "displayAlertDialog(2)"}));
}

TEST_F(MachineTest, AnEmptyAlertListClosesAnOpenDialog) {
    start();
    showingDialog(*this);
    plugin.alertsChange = true;
    EXPECT_TRUE(raise(status("active")));
    EXPECT_EQ(trace,
              (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                     "CacheStatusNotificationAndUpdateUI_a", "sub AlertListChanged_e",
                     "AlertShowingDialog_s -> AlertIdle_s", "DismissAlertDialog_a", "root anonymous"}));
}

TEST_F(MachineTest, TheRenderingAfterAnEnrollmentCanChangeTheAlertListToo) {
    start();
    enrollingStarted(*this);
    plugin.alertsChange = true;
    EXPECT_TRUE(raise(enrollComplete));
    EXPECT_EQ(trace.back(), "root anonymous");
    EXPECT_EQ(trace[trace.size() - 2], "sub AlertListChanged_e");
}

TEST_F(MachineTest, AStatusDuringAnEnrollmentRaisesNoAlertChange) {
    start();
    enrolling(*this);
    plugin.alertsChange = true;
    raise(status("active"));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                            "OnlyCacheStatusNotification_a", "root anonymous"}));
}

// Events that nobody takes.

TEST_F(MachineTest, EnrollmentErrorDuringProgressIsNotTaken) {
    start();
    progressing(*this);
    EXPECT_FALSE(raise(enrollError));
}

TEST_F(MachineTest, EnrollmentCompleteWhileTheRequestIsPendingIsNotTaken) {
    start();
    enrolling(*this);
    EXPECT_FALSE(raise(enrollComplete));
}

TEST_F(MachineTest, UnenrollmentErrorIsNotTakenInEitherState) {
    start();
    unenrolling(*this);
    EXPECT_FALSE(raise(unenrollment(UnenrollmentStatus::Error)));
    raise(unenrollStarted);
    EXPECT_FALSE(raise(unenrollment(UnenrollmentStatus::Error)));
}

TEST_F(MachineTest, ASecondAuthRequestIsNotTaken) {
    start();
    authenticating(*this);
    EXPECT_FALSE(raise(authRequest()));
}

TEST_F(MachineTest, StartedIsNotTakenTwice) {
    start();
    for (const auto& arrange : {enrollingStarted, authenticating, cancelling, progressing}) {
        arrange(*this);
        EXPECT_FALSE(raise(enrollStarted));
        raise(status("error"));
    }
}

TEST_F(MachineTest, ConfigSyncAndPostureReportsAreLostDuringAnEnrollment) {
    start();
    enrolling(*this);
    EXPECT_FALSE(raise(performConfigSync));
    EXPECT_FALSE(raise(triggerPostureReports));
    EXPECT_TRUE(plugin.calls.empty());
}

TEST_F(MachineTest, AnEnrollmentDuringAnUnenrollmentStartsInItsOwnRegionOnly) {
    start();
    unenrolling(*this);
    EXPECT_TRUE(raise(initiateEnrollment));
    EXPECT_TRUE(regionsAre(sml::state<MainUnenrolling_s>, sml::state<EnrollRequestPending_s>,
                           sml::state<DataplaneAuthIdle_s>, sml::state<UnenrollRequestPending_s>,
                           sml::state<AlertIdle_s>));
}

// Failures.

TEST_F(MachineTest, AFailedRequestStopsAtTheLogAndLeavesTheRegionsWhereTheyWent) {
    start();
    plugin.apiErrors = {"apiInitiateEnrollment"};
    EXPECT_FALSE(raise(initiateEnrollment));
    EXPECT_EQ(trace, (Lines{"root InitiateEnrollment_e", "sub InitiateEnrollment_e",
                            "MainActive_s -> MainEnrolling_s", "EnrollIdle_s -> EnrollRequestPending_s",
                            "DisplayEnrollmentStatusInitiating_a", "ApiInitiateEnrollment_a",
                            "root exception", "root anonymous"}));
    EXPECT_TRUE(regionsAre(sml::state<MainEnrolling_s>, sml::state<EnrollRequestPending_s>,
                           sml::state<DataplaneAuthIdle_s>, sml::state<UnenrollIdle_s>,
                           sml::state<AlertIdle_s>));
    plugin.apiErrors.clear();
    EXPECT_TRUE(raise(status("error")));
    EXPECT_TRUE(regionsAre(sml::state<MainActive_s>, sml::state<EnrollIdle_s>,
                           sml::state<DataplaneAuthIdle_s>, sml::state<UnenrollIdle_s>,
                           sml::state<AlertIdle_s>));
}

TEST_F(MachineTest, AnyOtherExceptionIsDroppedAndTheEventCountsAsNotTaken) {
    start();
    plugin.otherErrors = {"cacheStatusAndUpdateUI"};
    EXPECT_FALSE(raise(status("active")));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                            "CacheStatusNotificationAndUpdateUI_a", "root anonymous"}));
    plugin.otherErrors.clear();
    EXPECT_TRUE(raise(status("active")));
}

TEST_F(MachineTest, AQueuedEventWhoseDispatchThrowsIsOffTheQueue) {
    start();
    enrollingStarted(*this);
    plugin.otherErrors = {"onlyUpdateUI"};
    EXPECT_FALSE(raise(enrollComplete));
    plugin.otherErrors.clear();
    EXPECT_TRUE(raise(status("active")));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "sub StatusNotification_e",
                            "CacheStatusNotificationAndUpdateUI_a", "root anonymous"}));
}

} // namespace
