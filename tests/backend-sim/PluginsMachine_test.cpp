#include "tests/backend-sim/ServiceTest.h"

#include "backend-sim/Fault.h"
#include "presentation-plugin/PresentationPluginSm.h"
#include "tests/backend-sim/Decoding.h"
#include "tests/support/IdleSlots.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>

// The service must say at each stage what the plugin's machine takes there. Here the real machine listens,
// with a plugin behind it that does nothing.

namespace {

/// The stages of an enrollment between which time must pass, with the time that leads from one to the next.
constexpr const char* slowSteps =
    R"("delays":{"enrollment_started":10,"authentication_request":10,"login_failure":10,"registration":10,)"
    R"("cancellation":10,"unenrollment_started":10,"unenrollment":10})";
constexpr std::uint32_t step = 10;

class PluginsMachine : public test::ServiceTest {
protected:
    PluginsMachine() {
        machine.process_event(Register_e{});
        machine.process_event(Start_e{});
    }

    /// What the user does: the machine takes it, the request goes out, and the machine takes what comes of
    /// it.
    template <class Event>
    void act(const Event& event) {
        EXPECT_TRUE(machine.process_event(event));
    }
    void userEnrolls(const std::string& choice = "choice-1") {
        act(InitiateEnrollment_e{"1", choice, ""});
        enroll(choice);
        listen();
    }
    void userRenews(const std::string& id) {
        act(InitiateReEnrollment_e{"1", id, ""});
        reEnroll(id);
        listen();
    }
    void userLogsIn(const std::string& cookie) {
        const std::string id = runningId();
        act(EnrollmentAuthReply_e{"1", id, cookie});
        reply(id, cookie);
        listen();
    }
    void userCancels() {
        const std::string id = runningId();
        act(CancelEnrollment_e{"1", id});
        cancel(id);
        listen();
    }
    void userUnenrolls(const std::string& id) {
        act(InitiateUnenrollment_e{"1", id, ""});
        unenroll(id);
        listen();
    }
    void wait(int steps = 1) {
        for (int i = 0; i < steps; ++i) {
            pass(step);
            listen();
        }
    }

    /// Lets the machine hear what was sent.
    void listen() {
        for (const test::Received& document : documents()) {
            EXPECT_TRUE(isTaken(document)) << document.json;
        }
    }

    void expectRest() {
        const bool isAtRest = machine.is<decltype(sml::state<Started_s>)>(
            sml::state<MainActive_s>, sml::state<EnrollIdle_s>, sml::state<DataplaneAuthIdle_s>,
            sml::state<UnenrollIdle_s>, sml::state<AlertIdle_s>);
        EXPECT_TRUE(isAtRest);
    }

private:
    bool isTaken(const test::Received& document) {
        if (document.operation == "StatusNotification") {
            return machine.process_event(StatusNotification_e{
                std::make_shared<StatusNotification_t>(test::decodedStatus(document.json))});
        }
        if (document.operation == "EnrollmentStatusNotification") {
            return machine.process_event(
                EnrollmentStatusNotification_e{test::decodedEnrollmentStatus(document.json)});
        }
        if (document.operation == "EnrollmentAuthRequest") {
            return machine.process_event(EnrollmentAuthRequest_e{test::decodedAuthRequest(document.json)});
        }
        if (document.operation == "UnenrollmentStatusNotification") {
            return machine.process_event(
                UnenrollmentStatusNotification_e{test::decodedUnenrollmentStatus(document.json)});
        }
        return machine.process_event(DataplaneNotification_e{
            std::make_shared<DataplaneNotification_t>(test::decodedDataplane(document.json))});
    }

    test::LogCapture trace; ///< kept off the console
    test::IdleSlots plugin;
    PresentationPluginMachine machine{static_cast<IPresentationPluginSmCallbacks&>(plugin), quillSmlLogger()};
};

TEST_F(PluginsMachine, TakesALife) {
    userEnrolls();
    const std::string id = runningId();
    userLogsIn(enrollmentCookie(id));
    expectRest();
    set(R"({"certificate":"revoked","dataplane_alerts":[{}],"dataplane_auth_requests":[{"context_id":"c"}]})");
    userRenews(id);
    userLogsIn(enrollmentCookie(id));
    expectRest();
    replyDataplane("c", cookie(wrensim_dataplane_login, "c"));
    syncConfig(id);
    reportPosture();
    listen();
    expectRest();
    userUnenrolls(id);
    expectRest();
    userEnrolls();
    userCancels();
    expectRest();
}

TEST_F(PluginsMachine, TakesWhatComesOfUnknownIdsAndWrongCookies) {
    userEnrolls("other");
    expectRest();
    userRenews("other");
    expectRest();
    userUnenrolls("other");
    expectRest();
    for (const char* wrong : {"", "wrong"}) {
        userEnrolls();
        userLogsIn(wrong);
        expectRest();
    }
}

TEST_F(PluginsMachine, TakesACancelAtEveryStage) {
    load(slowSteps);
    listen();
    for (int stage = 1; stage <= 3; ++stage) {
        userEnrolls();
        wait(std::min(stage, 2)); // to "started", and on to the login
        if (stage == 3) {
            userLogsIn(enrollmentCookie(runningId()));
        }
        userCancels();
        wait(5);
        expectRest();
    }
}

TEST_F(PluginsMachine, TakesEveryFailureAtEveryMoment) {
    for (const sim::Word moment : sim::words::moment) {
        for (const sim::Word word : sim::failuresAt(moment)) {
            const std::string fault =
                R"("faults":[{"when":")" + std::string(moment) + R"(","fail":")" + std::string(word) + "\"}]";
            if (moment == sim::moment::unenrollmentStarted) {
                load(R"("device":{"enrolled":true},)" + fault);
                userUnenrolls("enrollment-1");
            } else {
                load(fault);
                userEnrolls();
                if (moment == sim::moment::enrollmentCookie) {
                    userLogsIn(enrollmentCookie(runningId()));
                } else if (moment == sim::moment::enrollmentCancel) {
                    userCancels();
                }
            }
            expectRest();
        }
    }
}

/// What ends whatever runs, from outside.
void goDown() { wrensim_set(R"({"service_error":"ipc_failure"})", nullptr, 0); }
void restart() { wrensim_load_scenario("{}", nullptr, 0); }

TEST_F(PluginsMachine, TakesTheEndOfTheServiceAtEveryStageOfAnEnrollment) {
    for (const auto end : {goDown, restart}) {
        for (int stage = 0; stage <= 4; ++stage) {
            load(slowSteps);
            userEnrolls();
            wait(std::min(stage, 2));
            if (stage == 3) {
                userLogsIn(enrollmentCookie(runningId()));
            } else if (stage == 4) {
                userCancels();
            }
            end();
            wait(100);
            expectRest();
        }
    }
}

TEST_F(PluginsMachine, TakesTheEndOfTheServiceAtEveryStageOfAnUnenrollment) {
    for (const auto end : {goDown, restart}) {
        for (int stage = 0; stage <= 1; ++stage) {
            load(R"("device":{"enrolled":true},)" + std::string(slowSteps));
            userUnenrolls("enrollment-1");
            wait(stage);
            end();
            wait(100);
            expectRest();
        }
    }
}

TEST_F(PluginsMachine, TakesTheRefusalsOfAServiceThatIsDown) {
    load(R"("device":{"enrolled":true,"service_error":"no_service"})");
    userEnrolls();
    expectRest();
    userRenews("enrollment-1");
    expectRest();
    userUnenrolls("enrollment-1");
    expectRest();
}

} // namespace
