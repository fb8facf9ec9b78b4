#include "backend-sim/UnenrollmentFlow.h"

#include "backend-sim/Words.h"

#include <string>
#include <utility>

namespace sim {

void UnenrollmentFlow::unenroll(const Target& connection, const Request& request) {
    Run asked{.connection = connection,
              .subject = {valueOf(request, "enrollment_id"), valueOf(request, "enrollment_context")},
              .life = core.life()};
    const bool isTaken = isRunning() && run->connection != connection && run->connection->isRunning();
    if (isTaken || core.device().isDown()) {
        tell(asked, "started", "");
        tell(asked, "complete", words::internalError);
        return;
    }
    run = std::move(asked);
    turn = DeliveryThread::newOwner();
    next(core.scenario().delays.unenrollmentStarted, &UnenrollmentFlow::start);
}

void UnenrollmentFlow::start() {
    run->isStarted = true;
    tell(*run, "started", "");
    next(core.scenario().delays.unenrollment, &UnenrollmentFlow::finish);
}

void UnenrollmentFlow::finish() {
    const Word failure = core.reach(moment::unenrollmentStarted);
    if (!isRunning()) {
        return;
    }
    if (!failure.empty()) {
        return complete(failure);
    }
    if (!core.device().hasEnrollment(run->subject.id)) {
        return complete("invalid_enrollment_id");
    }
    if (!core.device().enrollment.unenrollAllowed) {
        return complete(words::internalError);
    }
    core.device().unenroll();
    core.publishStatus();
    complete("success");
    core.publishDataplane();
    core.reach(moment::unenrolled);
}

void UnenrollmentFlow::abort() {
    if (isRunning()) {
        if (!run->isStarted) {
            tell(*run, "started", "");
        }
        complete(words::internalError);
    }
}

void UnenrollmentFlow::tidy() {
    if (!isRunning()) {
        end();
    }
}

boost::json::value UnenrollmentFlow::describe() const {
    if (!isRunning()) {
        return nullptr;
    }
    return {
        {"enrollment_id", run->subject.id},
        {"stage", run->isStarted ? "started" : "requested"},
    };
}

void UnenrollmentFlow::next(std::uint32_t delay, void (UnenrollmentFlow::*step)()) {
    core.later(delay, turn, [this, step] { (this->*step)(); });
}

void UnenrollmentFlow::tell(const Run& told, std::string_view status, std::string_view substatus) {
    core.send(told.connection, wrensim_unenrollment_status_notification,
              progressDocument(told.subject, status, substatus));
}

void UnenrollmentFlow::complete(std::string_view substatus) {
    tell(*run, "complete", substatus);
    end();
}

void UnenrollmentFlow::end() {
    run.reset();
    turn.reset();
}

} // namespace sim
