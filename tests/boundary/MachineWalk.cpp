#include "tests/boundary/MachineWalk.h"

#include <algorithm>

namespace test {
namespace {

constexpr BackendCall failingCalls[] = {
    BackendCall::Start,
    BackendCall::InitiateEnrollment,
    BackendCall::InitiateReEnrollment,
    BackendCall::EnrollmentAuthReply,
    BackendCall::CancelEnrollment,
    BackendCall::InitiateUnenrollment,
    BackendCall::PerformConfigSync,
    BackendCall::TriggerPostureReports,
    BackendCall::DataplaneAuthReply,
};

} // namespace

MachineWalk::MachineWalk() {
    // What the making wrote before comes from the machine's own start; the first event is the registration.
    std::vector<std::string> trace = machineTrace(log.messages());
    const auto first = std::ranges::find(trace, "root Register_e");
    trace.erase(trace.begin(), first);
    events += trace.empty() ? 0 : 1;
    model.follow(trace, factsOf("register"), false);
}

void MachineWalk::failAll(bool isSo) {
    isFailing = isSo;
    for (const BackendCall call : failingCalls) {
        scene.backend.answer(call, isSo ? QuillApiResult::RequestFailed : QuillApiResult::Success);
    }
}

std::string MachineWalk::step(std::string_view name) {
    log.clear();
    scene.step(name);
    MachineFacts facts = factsOf(name);
    if (isFailing) {
        facts.failing.insert(std::begin(failingCalls), std::end(failingCalls));
    }
    const std::vector<std::string> messages = log.messages();
    const bool isRefused = std::ranges::find(messages, "Unexpected state transition") != messages.end();
    const std::vector<std::string> trace = machineTrace(messages);
    events += trace.empty() ? 0 : 1;
    return model.follow(trace, facts, isRefused);
}

} // namespace test
