#include "presentation-plugin/PresentationPluginSm.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

// The machine alone, driven with events and watched through its trace and a plugin that only takes notes.

namespace {

using Lines = std::vector<std::string>;

/// Notes each slot that is called, with what it was passed.
class NotingPlugin : public IPresentationPluginSmCallbacks {
public:
    Lines calls;
    std::set<std::string> apiErrors;   ///< slots that throw ApiError_ex
    std::set<std::string> otherErrors; ///< slots that throw something else
    bool alertsChange = false;         ///< what the rendering slots report
    bool noAlerts = true;

    bool alertListIsEmpty() const override { return noAlerts; }
    void actionRegisterCallbacks(std::uintptr_t handle, IPresentationCB* callback,
                                 ITranslator* translator) override {
        note("registerCallbacks",
             std::to_string(handle) + (callback ? " callback" : "") + (translator ? " translator" : ""));
    }
    void actionUnregisterCallbacks() override { note("unregisterCallbacks"); }
    void actionStartApi() override { note("startApi"); }
    void actionStopApi() override { note("stopApi"); }
    void actionInitUI() override { note("initUI"); }
    void actionNotifyUIStopDone() override { note("notifyUIStopDone"); }
    void actionApiInitiateEnrollment(const InitiateEnrollment_e& request) override {
        note("apiInitiateEnrollment", request.enrollment_choice_id);
    }
    void actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) override {
        note("apiInitiateReEnrollment", request.enrollment_id);
    }
    void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) override {
        note("apiEnrollmentAuthReply", request.enrollment_cookie);
    }
    void actionApiCancelEnrollment(const CancelEnrollment_e& request) override {
        note("apiCancelEnrollment", request.enrollment_id);
    }
    void actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) override {
        note("apiDataplaneAuthReply", request.context_id);
    }
    void actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) override {
        note("apiInitiateUnenrollment", request.enrollment_id);
    }
    void actionApiPerformConfigSync(const PerformConfigSync_e& request) override {
        note("apiPerformConfigSync", request.enrollment_id);
    }
    void actionApiTriggerPostureReports(const TriggerPostureReports_e& request) override {
        note("apiTriggerPostureReports", request.version);
    }
    void actionDisplayApiErrorInternal() override { note("displayApiErrorInternal"); }
    void actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t> notification,
                                                  bool& alertsPending) override {
        note("cacheStatusAndUpdateUI", notification ? notification->state : "null");
        alertsPending = alertsChange;
    }
    void
    actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t> notification,
                                                bool& alertsPending) override {
        note("cacheDataplaneAndUpdateUI", notification ? notification->version : "null");
        alertsPending = alertsChange;
    }
    void actionOnlyUpdateUI(bool& alertsPending) override {
        note("onlyUpdateUI");
        alertsPending = alertsChange;
    }
    void
    actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t> notification) override {
        note("onlyCacheStatus", notification ? notification->state : "null");
    }
    void actionOnlyCacheDataplaneNotification(
        std::shared_ptr<const DataplaneNotification_t> notification) override {
        note("onlyCacheDataplane", notification ? notification->version : "null");
    }
    void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) override {
        note("displayEnrollmentStatusInternal", std::string(nameOf(status)));
    }
    void actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t& notification) override {
        note("displayEnrollmentStatus", std::string(nameOf(notification.status)));
    }
    void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) override {
        note("displayEnrollmentAuthRequest", request.start_url);
    }
    void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) override {
        note("displayDataplaneAuthRequest", request.context_id);
    }
    void actionDismissDataplaneAuth() override { note("dismissDataplaneAuth"); }
    void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) override {
        note("displayUnenrollmentStatusInternal", std::string(nameOf(status)));
    }
    void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t& notification) override {
        note("displayUnenrollmentStatus", std::string(nameOf(notification.status)));
    }
    void actionDisplayAlertDialog(AlertDialogAction action) override {
        note("displayAlertDialog", std::to_string(static_cast<int>(action)));
    }
    void actionDismissAlertDialog() override { note("dismissAlertDialog"); }

private:
    void note(const std::string& slot, const std::string& argument = "") {
        calls.push_back(argument.empty() ? slot : slot + "(" + argument + ")");
        if (apiErrors.contains(slot)) {
            throw ApiError_ex(slot);
        }
        if (otherErrors.contains(slot)) {
            throw std::runtime_error(slot);
        }
    }
};

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// A trace line in short: "root E", "sub E", "A -> B", or the action's name.
std::string shortened(std::string line) {
    line = replaced(line, "[struct PresentationPlugin_s][process_event] ", "root ");
    line = replaced(line, "[struct Started_s][process_event] ", "sub ");
    line = replaced(line, "[struct PresentationPlugin_s][transition] ", "");
    line = replaced(line, "[struct Started_s][transition] ", "");
    line = replaced(line, "state machine action ", "");
    line = replaced(line, "boost::ext::sml::v1_1_11::back::", "");
    line = replaced(line, "exception<class ApiError_ex,class ApiError_ex>", "exception");
    return replaced(replaced(line, "struct ", ""), "class ", "");
}

StatusNotification_e status(const std::string& state) {
    auto record = std::make_shared<StatusNotification_t>();
    record->state = state;
    return {record};
}

DataplaneNotification_e dataplane() {
    auto record = std::make_shared<DataplaneNotification_t>();
    record->version = "1";
    return {record};
}

EnrollmentStatusNotification_e enrollment(EnrollmentStatus progress) {
    EnrollmentStatusNotification_e event;
    event.notification.status = progress;
    return event;
}

UnenrollmentStatusNotification_e unenrollment(UnenrollmentStatus progress) {
    UnenrollmentStatusNotification_e event;
    event.notification.status = progress;
    return event;
}

EnrollmentAuthRequest_e authRequest() {
    EnrollmentAuthRequest_e event;
    event.request.start_url = "https://start";
    return event;
}

DataplaneAuthRequest_e dataplaneAuthRequest(const std::string& context) {
    DataplaneAuthRequest_e event;
    event.request.context_id = context;
    return event;
}

const InitiateEnrollment_e initiateEnrollment{"1", "choice", ""};
const InitiateReEnrollment_e initiateReEnrollment{"1", "enr", ""};
const InitiateUnenrollment_e initiateUnenrollment{"1", "enr", ""};
const CancelEnrollment_e cancelEnrollment{"1", "enr"};
const EnrollmentAuthReply_e enrollmentAuthReply{"1", "enr", "cookie"};
const PerformConfigSync_e performConfigSync{"1", "enr"};
const TriggerPostureReports_e triggerPostureReports{"1"};
const DataplaneAuthReply_e dataplaneAuthReply{"1", "ctx", "cookie"};

class MachineTest : public testing::Test {
public:
    /// Raises an event; `trace` and `calls` then hold what came of it.
    template <class Event>
    bool raise(const Event& event) {
        capture.clear();
        plugin.calls.clear();
        const bool taken = machine.process_event(event);
        trace.clear();
        for (const std::string& message : capture.messages()) {
            trace.push_back(shortened(message));
        }
        return taken;
    }

    void start() {
        raise(Register_e{7, nullptr, nullptr});
        raise(Start_e{});
    }

    template <class... States>
    bool regionsAre(States... states) const {
        return machine.is<decltype(sml::state<Started_s>)>(states...);
    }

    NotingPlugin plugin;
    test::LogCapture capture;
    PresentationPluginMachine machine{plugin, quillSmlLogger()};
    Lines trace;
};

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

// The regions, row by row: how to get to the source, the event, and what must come of it. What a row does
// after its event's own lines ends in front of the completion line.

struct RowCase {
    const char* name;
    std::function<void(MachineTest&)> arrange;
    std::function<bool(MachineTest&)> act;
    const char* event;
    Lines trace; ///< between the sub-machine's line and the first completion line
    Lines calls; ///< slots, in order, of the whole event
};

void PrintTo(const RowCase& row, std::ostream* out) { *out << row.name; }

template <class Event>
std::function<bool(MachineTest&)> sends(const Event& event) {
    return [event](MachineTest& test) { return test.raise(event); };
}

template <class... Events>
std::function<void(MachineTest&)> after(const Events&... events) {
    return [=](MachineTest& test) { (test.raise(events), ...); };
}

const auto enrollStarted = enrollment(EnrollmentStatus::Started);
const auto enrollError = enrollment(EnrollmentStatus::Error);
const auto enrollComplete = enrollment(EnrollmentStatus::Complete);
const auto unenrollStarted = unenrollment(UnenrollmentStatus::Started);
const auto unenrollComplete = unenrollment(UnenrollmentStatus::Complete);

const auto active = after();
const auto enrolling = after(initiateEnrollment);
const auto enrollingStarted = after(initiateEnrollment, enrollStarted);
const auto authenticating = after(initiateEnrollment, enrollStarted, authRequest());
const auto progressing = after(initiateEnrollment, enrollStarted, authRequest(), enrollmentAuthReply);
const auto cancelling = after(initiateEnrollment, enrollStarted, cancelEnrollment);
const auto unenrolling = after(initiateUnenrollment);
const auto unenrollingStarted = after(initiateUnenrollment, unenrollStarted);
const auto dataplaneAuthenticating = after(dataplaneAuthRequest("ctx"));
const auto showingDialog = after(DetailsButtonClicked_e{});

class RowTest : public MachineTest, public testing::WithParamInterface<RowCase> {};

TEST_P(RowTest, DoesAsTheTableSays) {
    start();
    GetParam().arrange(*this);
    EXPECT_TRUE(GetParam().act(*this));
    ASSERT_GE(trace.size(), 3u);
    EXPECT_EQ(trace[0], std::string("root ") + GetParam().event);
    EXPECT_EQ(trace[1], std::string("sub ") + GetParam().event);
    const auto completion = std::find(trace.begin(), trace.end(), "root anonymous");
    EXPECT_EQ(Lines(trace.begin() + 2, completion), GetParam().trace);
    EXPECT_EQ(plugin.calls, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(
    Main, RowTest,
    testing::Values(RowCase{"ActiveStatus",
                            active,
                            sends(status("active")),
                            "StatusNotification_e",
                            {"CacheStatusNotificationAndUpdateUI_a"},
                            {"cacheStatusAndUpdateUI(active)"}},
                    RowCase{"ActiveNullStatus",
                            active,
                            sends(StatusNotification_e{}),
                            "StatusNotification_e",
                            {"CacheStatusNotificationAndUpdateUI_a"},
                            {"cacheStatusAndUpdateUI(null)"}},
                    RowCase{"ActiveDataplane",
                            active,
                            sends(dataplane()),
                            "DataplaneNotification_e",
                            {"CacheDataplaneNotificationAndUpdateUI_a"},
                            {"cacheDataplaneAndUpdateUI(1)"}},
                    RowCase{"ActiveConfigSync",
                            active,
                            sends(performConfigSync),
                            "PerformConfigSync_e",
                            {"ApiPerformConfigSync_a"},
                            {"apiPerformConfigSync(enr)"}},
                    RowCase{"ActivePosture",
                            active,
                            sends(triggerPostureReports),
                            "TriggerPostureReports_e",
                            {"ApiTriggerPostureReports_a"},
                            {"apiTriggerPostureReports(1)"}},
                    RowCase{"EnrollingErrorStatus",
                            enrolling,
                            sends(status("error")),
                            "StatusNotification_e",
                            {"MainEnrolling_s -> MainActive_s", "CacheStatusNotificationAndUpdateUI_a"},
                            {"cacheStatusAndUpdateUI(error)", "displayEnrollmentStatusInternal(Aborted)"}},
                    RowCase{"EnrollingStatus",
                            enrolling,
                            sends(status("active")),
                            "StatusNotification_e",
                            {"OnlyCacheStatusNotification_a"},
                            {"onlyCacheStatus(active)"}},
                    RowCase{"EnrollingNullStatus",
                            enrolling,
                            sends(StatusNotification_e{}),
                            "StatusNotification_e",
                            {"OnlyCacheStatusNotification_a"},
                            {"onlyCacheStatus(null)"}},
                    RowCase{"EnrollingDataplane",
                            enrolling,
                            sends(dataplane()),
                            "DataplaneNotification_e",
                            {"OnlyCacheDataplaneNotification_a"},
                            {"onlyCacheDataplane(1)"}},
                    RowCase{"UnenrollingErrorStatus",
                            unenrolling,
                            sends(status("error")),
                            "StatusNotification_e",
                            {"MainUnenrolling_s -> MainActive_s", "CacheStatusNotificationAndUpdateUI_a"},
                            {"cacheStatusAndUpdateUI(error)", "displayUnenrollmentStatusInternal(Aborted)"}},
                    RowCase{"UnenrollingStatus",
                            unenrolling,
                            sends(status("active")),
                            "StatusNotification_e",
                            {"OnlyCacheStatusNotification_a"},
                            {"onlyCacheStatus(active)"}},
                    RowCase{"UnenrollingDataplane",
                            unenrolling,
                            sends(dataplane()),
                            "DataplaneNotification_e",
                            {"OnlyCacheDataplaneNotification_a"},
                            {"onlyCacheDataplane(1)"}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Enroll, RowTest,
    testing::Values(RowCase{"Initiate",
                            active,
                            sends(initiateEnrollment),
                            "InitiateEnrollment_e",
                            {"MainActive_s -> MainEnrolling_s", "EnrollIdle_s -> EnrollRequestPending_s",
                             "DisplayEnrollmentStatusInitiating_a", "ApiInitiateEnrollment_a"},
                            {"displayEnrollmentStatusInternal(Initiating)", "apiInitiateEnrollment(choice)"}},
                    RowCase{"InitiateAgain",
                            active,
                            sends(initiateReEnrollment),
                            "InitiateReEnrollment_e",
                            {"MainActive_s -> MainEnrolling_s", "EnrollIdle_s -> EnrollRequestPending_s",
                             "DisplayEnrollmentStatusInitiating_a", "ApiInitiateReEnrollment_a"},
                            {"displayEnrollmentStatusInternal(Initiating)", "apiInitiateReEnrollment(enr)"}},
                    RowCase{"PendingStarted",
                            enrolling,
                            sends(enrollStarted),
                            "EnrollmentStatusNotification_e",
                            {"EnrollRequestPending_s -> EnrollStarted_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Started)"}},
                    RowCase{"PendingError",
                            enrolling,
                            sends(enrollError),
                            "EnrollmentStatusNotification_e",
                            {"EnrollRequestPending_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Error)", "onlyUpdateUI"}},
                    RowCase{"StartedAuthRequest",
                            enrollingStarted,
                            sends(authRequest()),
                            "EnrollmentAuthRequest_e",
                            {"EnrollStarted_s -> EnrollAuthenticating_s", "DisplayEnrollmentAuthRequest_a"},
                            {"displayEnrollmentAuthRequest(https://start)"}},
                    RowCase{"StartedComplete",
                            enrollingStarted,
                            sends(enrollComplete),
                            "EnrollmentStatusNotification_e",
                            {"EnrollStarted_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Complete)", "onlyUpdateUI"}},
                    RowCase{"StartedError",
                            enrollingStarted,
                            sends(enrollError),
                            "EnrollmentStatusNotification_e",
                            {"EnrollStarted_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Error)", "onlyUpdateUI"}},
                    RowCase{"StartedCancel",
                            enrollingStarted,
                            sends(cancelEnrollment),
                            "CancelEnrollment_e",
                            {"EnrollStarted_s -> EnrollCancelPending_s",
                             "DisplayEnrollmentStatusCancelling_a", "ApiCancelEnrollment_a"},
                            {"displayEnrollmentStatusInternal(Cancelling)", "apiCancelEnrollment(enr)"}},
                    RowCase{"AuthenticatingReply",
                            authenticating,
                            sends(enrollmentAuthReply),
                            "EnrollmentAuthReply_e",
                            {"EnrollAuthenticating_s -> EnrollProgress_s",
                             "DisplayEnrollmentStatusAuthDone_a", "ApiEnrollmentAuthReply_a"},
                            {"displayEnrollmentStatusInternal(AuthDone)", "apiEnrollmentAuthReply(cookie)"}},
                    RowCase{"AuthenticatingComplete",
                            authenticating,
                            sends(enrollComplete),
                            "EnrollmentStatusNotification_e",
                            {"EnrollAuthenticating_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Complete)", "onlyUpdateUI"}},
                    RowCase{"AuthenticatingCancel",
                            authenticating,
                            sends(cancelEnrollment),
                            "CancelEnrollment_e",
                            {"EnrollAuthenticating_s -> EnrollCancelPending_s",
                             "DisplayEnrollmentStatusCancelling_a", "ApiCancelEnrollment_a"},
                            {"displayEnrollmentStatusInternal(Cancelling)", "apiCancelEnrollment(enr)"}},
                    RowCase{"CancelPendingComplete",
                            cancelling,
                            sends(enrollComplete),
                            "EnrollmentStatusNotification_e",
                            {"EnrollCancelPending_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Complete)", "onlyUpdateUI"}},
                    RowCase{"CancelPendingError",
                            cancelling,
                            sends(enrollError),
                            "EnrollmentStatusNotification_e",
                            {"EnrollCancelPending_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Error)", "onlyUpdateUI"}},
                    RowCase{"ProgressComplete",
                            progressing,
                            sends(enrollComplete),
                            "EnrollmentStatusNotification_e",
                            {"EnrollProgress_s -> EnrollIdle_s", "DisplayEnrollmentStatus_a"},
                            {"displayEnrollmentStatus(Complete)", "onlyUpdateUI"}},
                    RowCase{"ProgressCancel",
                            progressing,
                            sends(cancelEnrollment),
                            "CancelEnrollment_e",
                            {"EnrollProgress_s -> EnrollCancelPending_s",
                             "DisplayEnrollmentStatusCancelling_a", "ApiCancelEnrollment_a"},
                            {"displayEnrollmentStatusInternal(Cancelling)", "apiCancelEnrollment(enr)"}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(DataplaneAuth, RowTest,
                         testing::Values(RowCase{"Request",
                                                 active,
                                                 sends(dataplaneAuthRequest("ctx")),
                                                 "DataplaneAuthRequest_e",
                                                 {"DataplaneAuthIdle_s -> DataplaneAuthenticating_s",
                                                  "DisplayDataplaneAuthRequest_a"},
                                                 {"displayDataplaneAuthRequest(ctx)"}},
                                         RowCase{"SecondRequestIsShownWithoutTransition",
                                                 dataplaneAuthenticating,
                                                 sends(dataplaneAuthRequest("other")),
                                                 "DataplaneAuthRequest_e",
                                                 {"DisplayDataplaneAuthRequest_a"},
                                                 {"displayDataplaneAuthRequest(other)"}},
                                         RowCase{"Reply",
                                                 dataplaneAuthenticating,
                                                 sends(dataplaneAuthReply),
                                                 "DataplaneAuthReply_e",
                                                 {"DataplaneAuthenticating_s -> DataplaneAuthIdle_s",
                                                  "DismissDataplaneAuth_a", "DataplaneAuthReply_a"},
                                                 {"dismissDataplaneAuth", "apiDataplaneAuthReply(ctx)"}},
                                         RowCase{"Cancel",
                                                 dataplaneAuthenticating,
                                                 sends(CancelDataplaneAuth_e{}),
                                                 "CancelDataplaneAuth_e",
                                                 {"DataplaneAuthenticating_s -> DataplaneAuthIdle_s",
                                                  "DismissDataplaneAuth_a"},
                                                 {"dismissDataplaneAuth"}}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Unenroll, RowTest,
    testing::Values(
        RowCase{"Initiate",
                active,
                sends(initiateUnenrollment),
                "InitiateUnenrollment_e",
                {"MainActive_s -> MainUnenrolling_s", "UnenrollIdle_s -> UnenrollRequestPending_s",
                 "DisplayUnenrollmentStatusInitiating_a", "ApiInitiateUnenrollment_a"},
                {"displayUnenrollmentStatusInternal(Initiating)", "apiInitiateUnenrollment(enr)"}},
        RowCase{"PendingStarted",
                unenrolling,
                sends(unenrollStarted),
                "UnenrollmentStatusNotification_e",
                {"UnenrollRequestPending_s -> UnenrollStarted_s", "DisplayUnenrollmentStatus_a"},
                {"displayUnenrollmentStatus(Started)"}},
        RowCase{"StartedComplete",
                unenrollingStarted,
                sends(unenrollComplete),
                "UnenrollmentStatusNotification_e",
                {"UnenrollStarted_s -> UnenrollIdle_s", "DisplayUnenrollmentStatus_a"},
                {"displayUnenrollmentStatus(Complete)", "onlyUpdateUI"}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Alert, RowTest,
    testing::Values(RowCase{"Details",
                            active,
                            sends(DetailsButtonClicked_e{}),
                            "DetailsButtonClicked_e",
                            {"AlertIdle_s -> AlertShowingDialog_s", "DisplayAlertDialog_a"},
                            {"displayAlertDialog(0)"}},
                    RowCase{"DetailsAgain",
                            showingDialog,
                            sends(DetailsButtonClicked_e{}),
                            "DetailsButtonClicked_e",
                            {"BringAlertDialogToForeground_a"},
                            {"displayAlertDialog(1)"}},
                    RowCase{"Dismissed",
                            showingDialog,
                            sends(AlertDialogDismissed_e{}),
                            "AlertDialogDismissed_e",
                            {"AlertShowingDialog_s -> AlertIdle_s", "DismissAlertDialog_a"},
                            {"dismissAlertDialog"}}),
    [](const auto& row) { return row.param.name; });

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
