#include "backend-sim/EnrollmentFlow.h"

#include "backend-sim/Words.h"

#include <array>
#include <cstddef>
#include <utility>

namespace sim {
namespace {

constexpr std::array stageNames{"requested", "started", "logging_in", "registering", "cancelling"};

} // namespace

void EnrollmentFlow::enroll(const Target& connection, const Request& request) {
    Run asked{.connection = connection,
              .subject = {"enr-" + std::to_string(++begun), valueOf(request, "enrollment_context")},
              .choice = Choice(),
              .flaw = "invalid_choice_id",
              .life = core.life()};
    if (const Choice* choice = core.device().openChoice(valueOf(request, "enrollment_choice_id"))) {
        asked.choice = *choice;
        asked.flaw = {};
    }
    begin(std::move(asked));
}

void EnrollmentFlow::reEnroll(const Target& connection, const Request& request) {
    Run asked{.connection = connection,
              .subject = {valueOf(request, "enrollment_id"), valueOf(request, "enrollment_context")},
              .choice = std::nullopt,
              .flaw = {},
              .life = core.life()};
    if (!core.device().hasEnrollment(asked.subject.id)) {
        asked.flaw = "invalid_enrollment_id";
    } else if (!core.device().enrollment.reenrollAllowed) {
        asked.flaw = words::internalError;
    }
    begin(std::move(asked));
}

void EnrollmentFlow::begin(Run asked) {
    const bool isTaken = isRunning() && run->connection != asked.connection && run->connection->isRunning();
    if (isTaken || core.device().isDown()) {
        core.send(asked.connection, wrensim_enrollment_status_notification,
                  progressDocument(asked.subject, "error", words::internalError));
        return;
    }
    end();
    run = std::move(asked);
    enter(Stage::Requested);
    next(core.scenario().delays.enrollmentStarted, &EnrollmentFlow::start);
}

void EnrollmentFlow::start() {
    if (passes(moment::enrollmentRequest)) {
        enter(Stage::Started);
        tell("started", "");
        next(core.scenario().delays.authenticationRequest, &EnrollmentFlow::askForLogin);
    }
}

void EnrollmentFlow::askForLogin() {
    if (!run->flaw.empty()) {
        complete(run->flaw);
    } else if (passes(moment::enrollmentStarted)) {
        const Login& login = core.scenario().enrollmentLogin;
        core.logins().open(wrensim_enrollment_login, run->subject.id, login.cookie);
        enter(Stage::LoggingIn);
        core.send(run->connection, wrensim_enrollment_auth_request,
                  enrollmentAuthRequestDocument(run->subject, login));
        awaitLogin();
    }
}

void EnrollmentFlow::awaitLogin() {
    const Word failure = core.reach(moment::enrollmentLogin);
    if (isRunning() && !failure.empty()) {
        run->flaw = failure;
        next(core.scenario().delays.loginFailure, &EnrollmentFlow::failLogin);
    }
}

void EnrollmentFlow::failLogin() { complete(run->flaw); }

void EnrollmentFlow::takeCookie(const Request& request) {
    if (!isRunning(request) || run->stage != Stage::LoggingIn) {
        return;
    }
    if (core.logins().accepts(wrensim_enrollment_login, run->subject.id,
                              valueOf(request, "enrollment_cookie"))) {
        enter(Stage::Registering);
        next(core.scenario().delays.registration, &EnrollmentFlow::registerDevice);
    } else {
        complete("user_authentication_error");
    }
}

void EnrollmentFlow::registerDevice() {
    if (!passes(moment::enrollmentCookie)) {
        return;
    }
    Device& device = core.device();
    if (run->choice) {
        device.enroll(run->subject.id, *run->choice, core.now());
    } else if (device.hasEnrollment(run->subject.id)) {
        device.renew(core.now());
    } else {
        return complete("invalid_enrollment_id"); // it was ended meanwhile
    }
    core.publishStatus();
    complete("success");
    core.publishDataplane();
    core.reach(moment::enrolled);
}

void EnrollmentFlow::cancel(const Request& request) {
    if (isRunning(request) && run->stage != Stage::Requested && run->stage != Stage::Cancelling) {
        enter(Stage::Cancelling);
        next(core.scenario().delays.cancellation, &EnrollmentFlow::finishCancelling);
    }
}

void EnrollmentFlow::finishCancelling() {
    if (passes(moment::enrollmentCancel)) {
        complete("cancelled");
    }
}

void EnrollmentFlow::abort() {
    if (isRunning()) {
        fail(words::internalError);
    }
}

void EnrollmentFlow::tidy() {
    if (!isRunning()) {
        end();
    }
}

boost::json::value EnrollmentFlow::describe() const {
    if (!isRunning()) {
        return nullptr;
    }
    static_assert(stageNames.size() == static_cast<std::size_t>(Stage::Cancelling) + 1);
    return {
        {"enrollment_id", run->subject.id},
        {"is_renewal", !run->choice.has_value()},
        {"stage", stageNames[static_cast<std::size_t>(run->stage)]},
    };
}

bool EnrollmentFlow::isRunning(const Request& request) const {
    return isRunning() && valueOf(request, "enrollment_id") == run->subject.id;
}

bool EnrollmentFlow::passes(Word moment) {
    const Word failure = core.reach(moment);
    if (isRunning() && !failure.empty()) {
        fail(failure);
    }
    return isRunning();
}

void EnrollmentFlow::enter(Stage stage) {
    run->stage = stage;
    turn = DeliveryThread::newOwner();
}

void EnrollmentFlow::next(std::uint32_t delay, void (EnrollmentFlow::*step)()) {
    core.later(delay, turn, [this, step] { (this->*step)(); });
}

void EnrollmentFlow::tell(std::string_view status, std::string_view substatus) {
    core.send(run->connection, wrensim_enrollment_status_notification,
              progressDocument(run->subject, status, substatus));
}

void EnrollmentFlow::complete(std::string_view substatus) {
    tell("complete", substatus);
    end();
}

void EnrollmentFlow::fail(std::string_view substatus) {
    tell(run->stage == Stage::Requested ? "error" : "complete", substatus);
    end();
}

void EnrollmentFlow::end() {
    if (run) {
        core.logins().close(wrensim_enrollment_login, run->subject.id);
        run.reset();
        turn.reset();
    }
}

} // namespace sim
