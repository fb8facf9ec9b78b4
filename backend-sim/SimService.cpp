#include "backend-sim/SimService.h"

#include <utility>

namespace sim {
namespace {

/// How long a service would take, at a pace of 100 percent.
namespace delay {
using std::chrono::milliseconds;
constexpr milliseconds firstStatus{400};
constexpr milliseconds authenticationRequest{300};
constexpr milliseconds registration{1500};
constexpr milliseconds cancellation{300};
constexpr milliseconds unenrollment{800};
constexpr milliseconds configSync{300};
constexpr milliseconds postureReport{300};
} // namespace delay

std::int64_t secondsNow() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

const std::string& valueOf(const Request& request, std::string_view key) { return request.find(key)->second; }

} // namespace

SimService::SimService(DeliveryThread& thread, const Controls& controls)
    : deliveryThread(thread)
    , told(controls) {}

void SimService::onStart(const Target& connection) {
    listeners.push_back(connection);
    send(connection, wrensim_status_notification, initStatusDocument());
    later(delay::firstStatus,
          [this, connection] { send(connection, wrensim_status_notification, statusDocument(device)); });
}

void SimService::onRequest(const Target& connection, Operation operation, const Request& request) {
    switch (operation) {
    case Operation::InitiateEnrollment:
        return enroll(connection, request);
    case Operation::InitiateReEnrollment:
        return reEnroll(connection, request);
    case Operation::EnrollmentAuthReply:
        return takeCookie(request);
    case Operation::CancelEnrollment:
        return cancelEnrollment(request);
    case Operation::InitiateUnenrollment:
        return unenroll(connection, request);
    case Operation::PerformConfigSync:
        return syncConfig(request);
    case Operation::TriggerPostureReports:
        return later(delay::postureReport, [this] { sendStatusToAll(); });
    case Operation::DataplaneAuthReply:
        return send(connection, wrensim_dataplane_notification, dataplaneDocument());
    case Operation::GetQuillApiFactory:
    case Operation::CreateApi:
    case Operation::Start:
    case Operation::Stop:
        return;
    }
}

void SimService::enroll(const Target& connection, const Request& request) {
    const std::string& context = valueOf(request, "enrollment_context");
    if (device.isEnrolled || valueOf(request, "enrollment_choice_id") != enrollmentChoiceId) {
        send(connection, wrensim_enrollment_status_notification,
             enrollmentStatusDocument({"", context}, "complete", "invalid_choice_id"));
        return;
    }
    beginEnrollment(connection, "enr-" + std::to_string(enrollmentsBegun + 1), context);
}

void SimService::reEnroll(const Target& connection, const Request& request) {
    const std::string& id = valueOf(request, "enrollment_id");
    const std::string& context = valueOf(request, "enrollment_context");
    if (!isOwnEnrollment(request)) {
        send(connection, wrensim_enrollment_status_notification,
             enrollmentStatusDocument({id, context}, "complete", "invalid_enrollment_id"));
        return;
    }
    beginEnrollment(connection, id, context);
}

void SimService::beginEnrollment(const Target& connection, std::string id, std::string context) {
    enrollment = RunningEnrollment{{std::move(id), std::move(context)}, connection, ++enrollmentsBegun};
    send(connection, wrensim_enrollment_status_notification,
         enrollmentStatusDocument(enrollment->progress, "started", ""));
    laterInEnrollment(delay::authenticationRequest, [this] {
        send(enrollment->connection, wrensim_enrollment_auth_request,
             enrollmentAuthRequestDocument(enrollment->progress));
    });
}

void SimService::takeCookie(const Request& request) {
    if (!isRunningEnrollment(request)) {
        return;
    }
    if (valueOf(request, "enrollment_cookie").empty()) {
        completeEnrollment("user_authentication_error");
        return;
    }
    laterInEnrollment(delay::registration, [this] { becomeEnrolled(); });
}

void SimService::cancelEnrollment(const Request& request) {
    if (isRunningEnrollment(request)) {
        laterInEnrollment(delay::cancellation, [this] { completeEnrollment("cancelled"); });
    }
}

void SimService::becomeEnrolled() {
    device.isEnrolled = true;
    device.enrollmentId = enrollment->progress.id;
    device.enrollmentTime = secondsNow();
    device.lastConfigSync = static_cast<std::uint64_t>(device.enrollmentTime);
    sendStatusToAll();
    completeEnrollment("success");
}

void SimService::completeEnrollment(std::string_view substatus) {
    const RunningEnrollment ended = std::move(*enrollment);
    enrollment.reset();
    send(ended.connection, wrensim_enrollment_status_notification,
         enrollmentStatusDocument(ended.progress, "complete", substatus));
}

bool SimService::isRunningEnrollment(const Request& request) const {
    return enrollment && valueOf(request, "enrollment_id") == enrollment->progress.id;
}

void SimService::unenroll(const Target& connection, const Request& request) {
    const EnrollmentProgress subject{valueOf(request, "enrollment_id"),
                                     valueOf(request, "enrollment_context")};
    if (!isOwnEnrollment(request)) {
        send(connection, wrensim_unenrollment_status_notification,
             enrollmentStatusDocument(subject, "complete", "invalid_enrollment_id"));
        return;
    }
    send(connection, wrensim_unenrollment_status_notification,
         enrollmentStatusDocument(subject, "started", ""));
    later(delay::unenrollment, [this, connection, subject] {
        device = {};
        sendStatusToAll();
        send(connection, wrensim_unenrollment_status_notification,
             enrollmentStatusDocument(subject, "complete", "success"));
    });
}

void SimService::syncConfig(const Request& request) {
    if (!isOwnEnrollment(request)) {
        return;
    }
    later(delay::configSync, [this] {
        device.lastConfigSync = static_cast<std::uint64_t>(secondsNow());
        sendStatusToAll();
    });
}

bool SimService::isOwnEnrollment(const Request& request) const {
    return device.isEnrolled && valueOf(request, "enrollment_id") == device.enrollmentId;
}

void SimService::later(std::chrono::milliseconds delay, Step step) {
    deliveryThread.post(std::move(step), delay * pace / 100);
}

void SimService::laterInEnrollment(std::chrono::milliseconds delay, Step step) {
    later(delay, [this, number = enrollment->number, step = std::move(step)] {
        if (enrollment && enrollment->number == number) {
            step();
        }
    });
}

void SimService::send(const Target& connection, WrenSimDocument document, const std::string& json) const {
    if (connection->isRunning() && !told.isQuiet()) {
        connection->deliver(document, json);
    }
}

void SimService::sendStatusToAll() {
    std::erase_if(listeners, [](const Target& connection) { return !connection->isRunning(); });
    const std::string status = statusDocument(device);
    for (const Target& connection : listeners) {
        send(connection, wrensim_status_notification, status);
    }
}

} // namespace sim
