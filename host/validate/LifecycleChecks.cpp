// The orders in which a plugin can be driven.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <array>

namespace host::validate {
namespace {

void expectRefused(std::string_view what, const Step& step) {
    expectEqual(what, step.result, presentationFailed);
    expectEqual(joined({"what ", what, " causes"}), step.order(), {});
}

void refusesStartBeforeRegister(Trial& trial) {
    trial.create();
    expectRefused("Start", trial.start());
}

void refusesStopBeforeStart(Trial& trial) {
    trial.create();
    expectRefused("Stop of an unregistered plugin", trial.stop());
    trial.registerHost();
    expectRefused("Stop of a registered plugin", trial.stop());
}

void refusesUnregisterBeforeRegister(Trial& trial) {
    trial.create();
    expectRefused("Unregister", trial.unregister());
}

void refusesUnregisterWhileStarted(Trial& trial) {
    trial.begin();
    expectRefused("Unregister", trial.unregister());
    expect(!trial.status(enrolledDocument()).screens().empty(), "the plugin draws nothing any more");
    expectEqual("Stop afterwards", trial.stop().result, 0);
}

void refusesASecondStart(Trial& trial) {
    trial.begin();
    expectRefused("the second Start", trial.start());
}

void refusesASecondStop(Trial& trial) {
    trial.begin();
    trial.stop();
    expectRefused("the second Stop", trial.stop());
}

void drawsTheFirstScreen(Trial& trial) {
    expectEqual("notices of Start", trial.begin().screens(),
                {"tile setup Transition \"Initializing. Please wait...\" \"Initializing. Please wait...\" []",
                 "adv-enrollment setup disabled", "adv-sync setup disabled \"None\"", "stats-overview setup",
                 "stats-details setup"});
}

void drawsBeforeItConnects(Trial& trial) {
    expectEqual("the order of Start", trial.begin().order(),
                {"notice", "notice", "notice", "notice", "notice", "request CreateApi", "request Start"});
}

void stopsTheBackendFirst(Trial& trial) {
    trial.begin();
    const Step stopped = trial.stop();
    expectEqual("Stop", stopped.result, 0);
    expectEqual("the order of Stop", stopped.order(), {"request Stop", "stop done"});
}

void tellsOnTheCallersThread(Trial& trial) {
    trial.begin();
    for (const Arrival& arrival : trial.stop().arrivals) {
        expect(arrival.kind != Arrival::Kind::StopDone || arrival.thread == std::this_thread::get_id(),
               "the end of the stop is told on another thread");
    }
}

void treatsReasonsAlike(Trial& trial) {
    for (const std::uint32_t reason : {0U, 1U}) {
        trial.begin();
        const Step stopped = trial.stop(reason);
        expectEqual("Stop", stopped.result, 0);
        expectEqual("ends of the stop that are told", static_cast<std::int64_t>(stopped.stopsDone()), 1);
    }
}

void startsAgain(Trial& trial) {
    trial.begin();
    trial.stop();
    const Step again = trial.start();
    expectEqual("Start", again.result, 0);
    expectEqual("requests", again.requests(), {"CreateApi", "Start"});
    expectEqual("the tile", lineAt(again.screens(), 0),
                "tile setup Transition \"Initializing. Please wait...\" \"Initializing. Please wait...\" []");
}

void beginsAnewAfterAStop(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
    trial.stop();
    trial.start();
    trial.status(with(notEnrolledDocument(), "/substate", "again"));
    expectEqual("requests of Enroll", trial.press("quill_tile_enroll_action_btn").requests(),
                {R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                 R"("enrollment_context":""})"});
}

void tellsLateDocumentsToTheLogAlone(Trial& trial) {
    trial.begin();
    trial.stop();
    expectEqual("notices of a late status", trial.status(enrolledDocument()).screens(),
                {"apilog statusnotification"});
    expectEqual("notices of a late dataplane document", trial.dataplane(dataplaneDocument(1, 1)).screens(),
                {"apilog dataplanenotification"});
    expectEqual("notices of a late enrollment status", trial.enrollment("started").screens(),
                {"apilog enrollmentstatusnotification"});
}

/// The states of a plugin and what each call makes of them.
enum class State { Unregistered, Registered, Started };

struct Call {
    std::string_view name;
    Step (*make)(Trial& trial);
    State from;
    State to;
};
constexpr std::array calls{
    Call{"Register", [](Trial& trial) { return trial.registerHost(); }, State::Unregistered,
         State::Registered},
    Call{"Start", [](Trial& trial) { return trial.start(); }, State::Registered, State::Started},
    Call{"Stop", [](Trial& trial) { return trial.stop(); }, State::Started, State::Registered},
    Call{"Unregister", [](Trial& trial) { return trial.unregister(); }, State::Registered,
         State::Unregistered},
};

void takesCallsInAnyOrder(Trial& trial) {
    constexpr int rounds = 400;
    State state = State::Unregistered;
    trial.create();
    for (int round = 0; round < rounds; ++round) {
        const Call& call = calls.at(trial.dice().below(calls.size()));
        const bool isRight = state == call.from;
        expectEqual(joined({std::to_string(round + 1), ". call, ", call.name}), call.make(trial).result,
                    isRight ? presentationDone : presentationFailed);
        state = isRight ? call.to : state;
    }
}

constexpr Check lifecycleTable[] = {
    {"lifecycle.start-unregistered", "Start before Register is refused and causes nothing.", Through::Both,
     &refusesStartBeforeRegister},
    {"lifecycle.stop-unstarted", "Stop before Start is refused and tells of no end.", Through::Both,
     &refusesStopBeforeStart},
    {"lifecycle.unregister-unregistered", "Unregister before Register is refused.", Through::Both,
     &refusesUnregisterBeforeRegister},
    {"lifecycle.unregister-started", "Unregister of a running plugin is refused and it runs on.",
     Through::Both, &refusesUnregisterWhileStarted},
    {"lifecycle.start-twice", "A second Start is refused and causes nothing.", Through::Both,
     &refusesASecondStart},
    {"lifecycle.stop-twice", "A second Stop is refused and tells of no end.", Through::Both,
     &refusesASecondStop},
    {"start.first-screen", "Start sets up tile, panels and statistics, in that order.", Through::Both,
     &drawsTheFirstScreen},
    {"start.order", "Start draws first and then connects.", Through::Both, &drawsBeforeItConnects},
    {"stop.order", "Stop stops the backend and then tells the host, once.", Through::Both,
     &stopsTheBackendFirst},
    {"stop.thread", "The end of the stop is told on the thread that called Stop.", Through::Both,
     &tellsOnTheCallersThread},
    {"stop.reasons", "Both reasons stop alike.", Through::Both, &treatsReasonsAlike},
    {"lifecycle.restart", "A stopped plugin starts again with a new connection.", Through::Both,
     &startsAgain},
    {"lifecycle.restart-anew", "What was in progress at the stop is over with it.", Through::Both,
     &beginsAnewAfterAStop},
    {"lifecycle.late-documents", "A document after the stop goes to the host's log and is then dropped.",
     Through::Both, &tellsLateDocumentsToTheLogAlone},
    {"lifecycle.random-orders", "Register, Start, Stop and Unregister in a random order.", Through::Both,
     &takesCallsInAnyOrder},
};

} // namespace

std::span<const Check> lifecycleChecks() { return lifecycleTable; }

} // namespace host::validate
