// While nobody listens, the machine passes events by at a glance. It must do just what it does while it is
// listened to.
#include "tests/presentation-plugin/MachineTest.h"

#include "common2/logging/LogCore.h"

#include <random>

namespace {

using namespace machine_test;

/// Nothing is logged while it lives; whether the machine has to ask the filter for that can be chosen.
class Filter {
public:
    Filter() { listen(false); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;
    ~Filter() { common2::removeLogFilter(); }

    static void listen(bool wanted) {
        common2::installLogFilter([](const boost::log::attribute_value_set&) { return false; },
                                  wanted ? DBG_TRACE : DBG_ERROR);
    }
};

/// A machine and its plugin, listened to or not.
struct Side {
    explicit Side(bool listened_)
        : listened(listened_) {}

    template <class Event>
    bool raise(const Event& event) {
        Filter::listen(listened);
        plugin.calls.clear();
        return machine.process_event(event);
    }

    /// Of each state, whether the machine or one of its regions is in it.
    std::vector<bool> states() const {
        using sml::state;
        return {machine.is(state<Unregistered_s>),  machine.is(state<Registered_s>),
                machine.is(state<Started_s>),       isIn(state<MainActive_s>),
                isIn(state<MainEnrolling_s>),       isIn(state<MainUnenrolling_s>),
                isIn(state<EnrollIdle_s>),          isIn(state<EnrollRequestPending_s>),
                isIn(state<EnrollStarted_s>),       isIn(state<EnrollAuthenticating_s>),
                isIn(state<EnrollCancelPending_s>), isIn(state<EnrollProgress_s>),
                isIn(state<DataplaneAuthIdle_s>),   isIn(state<DataplaneAuthenticating_s>),
                isIn(state<UnenrollIdle_s>),        isIn(state<UnenrollRequestPending_s>),
                isIn(state<UnenrollStarted_s>),     isIn(state<AlertIdle_s>),
                isIn(state<AlertShowingDialog_s>)};
    }

    template <class State>
    bool isIn(State state) const {
        return machine.is<decltype(sml::state<Started_s>)>(state);
    }

    bool listened;
    NotingPlugin plugin;
    PresentationPluginMachine machine{static_cast<IPresentationPluginSmCallbacks&>(plugin), quillSmlLogger()};
};

/// Every event that can come from outside, by number.
const std::vector<std::function<bool(Side&)>>& events() {
    const auto raises = [](const auto& event) { return [event](Side& side) { return side.raise(event); }; };
    static const std::vector<std::function<bool(Side&)>> all{
        raises(Register_e{7, nullptr, nullptr}),
        raises(Start_e{}),
        raises(Start_e{}),
        raises(Stop_e{}),
        raises(Unregister_e{}),
        raises(status("active")),
        raises(status("error")),
        raises(StatusNotification_e{}),
        raises(dataplane()),
        raises(enrollStarted),
        raises(enrollError),
        raises(enrollComplete),
        raises(unenrollStarted),
        raises(unenrollComplete),
        raises(authRequest()),
        raises(dataplaneAuthRequest("ctx")),
        raises(initiateEnrollment),
        raises(initiateReEnrollment),
        raises(initiateUnenrollment),
        raises(cancelEnrollment),
        raises(enrollmentAuthReply),
        raises(performConfigSync),
        raises(triggerPostureReports),
        raises(dataplaneAuthReply),
        raises(CancelDataplaneAuth_e{}),
        raises(DetailsButtonClicked_e{}),
        raises(AlertDialogDismissed_e{}),
    };
    return all;
}

/// With boost::ext::sml itself, an `ApiError_ex` of an action that was raised from the sub-machine's queue is
/// handled again and again until the stack is full. The plugin's own dialog never throws one.
#if defined(WREN_SML_SYSTEM)
constexpr bool librarysEngineRecurses = true;
#else
constexpr bool librarysEngineRecurses = false;
#endif

class SilenceTest : public testing::Test {
protected:
    /// Changes what the plugin does to the machine: which slot fails, whether alerts change.
    void changePlugin(std::mt19937& random) {
        static const std::vector<std::string> slots{"startApi",
                                                    "apiInitiateEnrollment",
                                                    "apiInitiateUnenrollment",
                                                    "cacheStatusAndUpdateUI",
                                                    "displayEnrollmentStatus",
                                                    "displayAlertDialog"};
        const bool alertsChange = random() % 2 == 0;
        const bool noAlerts = random() % 2 == 0;
        const unsigned luck = random() % 8;
        const std::string& slot = slots[random() % slots.size()];
        const bool throwsApiError = luck == 0 && !(librarysEngineRecurses && slot == "displayAlertDialog");
        for (Side* side : {&listened, &silent}) {
            side->plugin.alertsChange = alertsChange;
            side->plugin.noAlerts = noAlerts;
            side->plugin.apiErrors = throwsApiError ? std::set<std::string>{slot} : std::set<std::string>{};
            side->plugin.otherErrors = luck == 1 ? std::set<std::string>{slot} : std::set<std::string>{};
        }
    }

    Filter filter;
    Side listened{true};
    Side silent{false};
};

TEST_F(SilenceTest, WhatTheMachineDoesDoesNotDependOnWhetherItIsListenedTo) {
    std::mt19937 random(20240309);
    unsigned taken = 0;
    constexpr unsigned count = 5'000;
    for (unsigned step = 0; step < count && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        changePlugin(random);
        // Starting is more often right than stopping, so that most events find the regions at work.
        const std::size_t choice = random() % (events().size() + 4);
        const auto& event =
            events()[choice < events().size() && (choice != 3 || step % 8 == 0) ? choice : step % 2];
        const bool result = event(listened);
        EXPECT_EQ(event(silent), result);
        EXPECT_EQ(listened.plugin.calls, silent.plugin.calls);
        EXPECT_EQ(listened.states(), silent.states());
        taken += result ? 1 : 0;
    }
    EXPECT_GT(taken, count / 10);
    EXPECT_LT(taken, count * 9 / 10);
}

} // namespace
