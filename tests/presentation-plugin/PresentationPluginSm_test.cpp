// The root, the trace and the functors.
#include "tests/presentation-plugin/MachineTest.h"

namespace {

using namespace machine_test;

// The root.

TEST_F(MachineTest, ConstructionStartsTheMachine) {
    EXPECT_EQ(
        capture.messages(),
        (Lines{"[struct PresentationPlugin_s][process_event] struct boost::ext::sml::v1_1_11::back::on_entry<"
               "struct boost::ext::sml::v1_1_11::back::_,struct boost::ext::sml::v1_1_11::back::initial>",
               "[struct PresentationPlugin_s][process_event] struct "
               "boost::ext::sml::v1_1_11::back::anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Unregistered_s>));
    EXPECT_TRUE(plugin.calls.empty());
}

TEST_F(MachineTest, RegisterStoresTheCallbacks) {
    EXPECT_TRUE(raise(Register_e{7, nullptr, nullptr}));
    EXPECT_EQ(trace, (Lines{"root Register_e", "Unregistered_s -> Registered_s", "RegisterCallbacks_a",
                            "root anonymous"}));
    EXPECT_EQ(plugin.calls, (Lines{"registerCallbacks(7)"}));
}

TEST_F(MachineTest, StartDrawsAndStartsTheBackendAndCompletes) {
    raise(Register_e{});
    EXPECT_TRUE(raise(Start_e{}));
    EXPECT_EQ(trace, (Lines{"root Start_e", "Registered_s -> Starting_s", "InitUI_a", "StartApi_a",
                            "root anonymous", "Starting_s -> Started_s", "root anonymous"}));
    EXPECT_EQ(plugin.calls, (Lines{"initUI", "startApi"}));
    EXPECT_TRUE(machine.is(sml::state<Started_s>));
    EXPECT_TRUE(regionsAre(sml::state<MainActive_s>, sml::state<EnrollIdle_s>,
                           sml::state<DataplaneAuthIdle_s>, sml::state<UnenrollIdle_s>,
                           sml::state<AlertIdle_s>));
}

TEST_F(MachineTest, StartWithABackendThatCannotStartShowsTheErrorAndIsTaken) {
    raise(Register_e{});
    plugin.apiErrors = {"startApi"};
    EXPECT_TRUE(raise(Start_e{}));
    EXPECT_EQ(trace,
              (Lines{"root Start_e", "Registered_s -> Starting_s", "InitUI_a", "StartApi_a", "root exception",
                     "Starting_s -> Registered_s", "DisplayApiErrorInternal_a", "root anonymous"}));
    EXPECT_EQ(plugin.calls, (Lines{"initUI", "startApi", "displayApiErrorInternal"}));
    EXPECT_TRUE(machine.is(sml::state<Registered_s>));
    plugin.apiErrors.clear();
    EXPECT_TRUE(raise(Start_e{}));
    EXPECT_TRUE(machine.is(sml::state<Started_s>));
}

TEST_F(MachineTest, AnErrorThatCannotBeShownIsDropped) {
    raise(Register_e{});
    plugin.apiErrors = {"startApi", "displayApiErrorInternal"};
    EXPECT_FALSE(raise(Start_e{}));
    EXPECT_TRUE(machine.is(sml::state<Registered_s>));
}

TEST_F(MachineTest, StopStopsTheBackendAndTellsTheHost) {
    start();
    EXPECT_TRUE(raise(Stop_e{}));
    EXPECT_EQ(trace, (Lines{"root Stop_e", "Started_s -> Registered_s", "StopApi_a", "NotifyUIStopDone_a",
                            "root anonymous"}));
    EXPECT_EQ(plugin.calls, (Lines{"stopApi", "notifyUIStopDone"}));
}

TEST_F(MachineTest, UnregisterForgetsTheCallbacks) {
    raise(Register_e{});
    EXPECT_TRUE(raise(Unregister_e{}));
    EXPECT_EQ(trace, (Lines{"root Unregister_e", "Registered_s -> Unregistered_s", "UnregisterCallbacks_a",
                            "root anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Unregistered_s>));
}

TEST_F(MachineTest, SecondStartFindsNoRow) {
    start();
    EXPECT_FALSE(raise(Start_e{}));
    EXPECT_EQ(trace, (Lines{"root Start_e", "root anonymous"}));
}

TEST_F(MachineTest, StopDuringAnEnrollmentResetsTheRegionsWithoutAbort) {
    start();
    raise(initiateEnrollment);
    EXPECT_TRUE(raise(Stop_e{}));
    EXPECT_EQ(plugin.calls, (Lines{"stopApi", "notifyUIStopDone"}));
    EXPECT_TRUE(raise(Start_e{}));
    EXPECT_EQ(plugin.calls, (Lines{"initUI", "startApi"}));
    EXPECT_TRUE(regionsAre(sml::state<MainActive_s>, sml::state<EnrollIdle_s>,
                           sml::state<DataplaneAuthIdle_s>, sml::state<UnenrollIdle_s>,
                           sml::state<AlertIdle_s>));
}

TEST_F(MachineTest, StatusBeforeStartWritesRootAndCompletionLineOnly) {
    EXPECT_FALSE(raise(status("active")));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "root anonymous"}));
}

TEST_F(MachineTest, StatusAfterStopIsARootLevelMiss) {
    start();
    raise(Stop_e{});
    EXPECT_FALSE(raise(status("active")));
    EXPECT_EQ(trace, (Lines{"root StatusNotification_e", "root anonymous"}));
}

// The trace.

TEST_F(MachineTest, OneStatusWritesFourLinesInOrder) {
    start();
    raise(status("active"));
    EXPECT_EQ(capture.messages(),
              (Lines{"[struct PresentationPlugin_s][process_event] struct StatusNotification_e",
                     "[struct Started_s][process_event] struct StatusNotification_e",
                     "state machine action CacheStatusNotificationAndUpdateUI_a",
                     "[struct PresentationPlugin_s][process_event] struct "
                     "boost::ext::sml::v1_1_11::back::anonymous"}));
}

TEST_F(MachineTest, TraceCarriesTheLoggersOwnPlaceAndNames) {
    start();
    raise(initiateEnrollment);
    const auto records = capture.records();
    ASSERT_GE(records.size(), 4u);
    const auto traced = [](const char* function, int line, const char* message) {
        return test::LoggedRecord{0, function, "state_machine/QuillSmlLogger", line, message};
    };
    EXPECT_EQ(records[0], traced("QuillSmlLogger_t::log_process_event", 18,
                                 "[struct PresentationPlugin_s][process_event] struct InitiateEnrollment_e"));
    EXPECT_EQ(records[1], traced("QuillSmlLogger_t::log_process_event", 18,
                                 "[struct Started_s][process_event] struct InitiateEnrollment_e"));
    EXPECT_EQ(records[2],
              traced("QuillSmlLogger_t::log_state_change", 25,
                     "[struct Started_s][transition] class MainActive_s -> class MainEnrolling_s"));
}

TEST_F(MachineTest, TransitionToTheSubMachineNamesItAsStruct) {
    raise(Register_e{});
    raise(Start_e{});
    const Lines messages = capture.messages();
    EXPECT_NE(std::find(messages.begin(), messages.end(),
                        "[struct PresentationPlugin_s][transition] class Starting_s -> struct Started_s"),
              messages.end());
}

TEST_F(MachineTest, ExceptionIsTracedByTheLibrarysName) {
    raise(Register_e{});
    plugin.apiErrors = {"startApi"};
    raise(Start_e{});
    const Lines messages = capture.messages();
    EXPECT_NE(std::find(messages.begin(), messages.end(),
                        "[struct PresentationPlugin_s][process_event] struct "
                        "boost::ext::sml::v1_1_11::back::exception<class ApiError_ex,class ApiError_ex>"),
              messages.end());
}

// The functors.

TEST_F(MachineTest, EveryActionLogsItsNameAtItsPlace) {
    start();
    showingDialog(*this);
    plugin.alertsChange = true;
    plugin.noAlerts = false;
    raise(status("active"));
    std::map<std::string, test::LoggedRecord> byFunction;
    for (const test::LoggedRecord& record : capture.records()) {
        byFunction[record.function] = record;
    }
    const test::LoggedRecord& cached = byFunction["CacheStatusNotificationAndUpdateUI_a::operator ()"];
    EXPECT_EQ(cached.message, "state machine action CacheStatusNotificationAndUpdateUI_a");
    EXPECT_EQ(cached.file, "PresentationPluginSm");
    EXPECT_EQ(cached.severity, 0);
    EXPECT_GT(cached.line, 50);
    const test::LoggedRecord& updated = byFunction["UpdateAlertDialog_a::operator ()"];
    EXPECT_EQ(updated.message, "state machine action UpdatUpdateAlertDialog_aeGlobalErrorDialog_a");
    EXPECT_GT(updated.line, cached.line);
}

} // namespace
