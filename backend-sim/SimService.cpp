#include "backend-sim/SimService.h"

#include "backend-sim/ScenarioWriter.h"

#include <boost/json/serialize.hpp>

#include <utility>

namespace sim {

SimService::SimService(DeliveryThread& thread, const Controls& controls, LoginCookies& cookies)
    : core(thread, controls, cookies)
    , enrollment(core)
    , unenrollment(core)
    , dataplane(core)
    , upkeep(core) {
    core.setAfterStep([this] {
        enrollment.tidy();
        unenrollment.tidy();
        upkeep.arrange();
    });
}

void SimService::setPace(std::uint32_t percent) {
    core.run([&] { core.setPace(percent); });
}

void SimService::onStart(const Target& connection) {
    core.run([&] {
        core.addListener(connection);
        core.reach(moment::start);
    });
}

void SimService::onRequest(const Target& connection, Operation operation, const Request& request) {
    core.run([&] { act(connection, operation, request); });
}

void SimService::act(const Target& connection, Operation operation, const Request& request) {
    switch (operation) {
    case Operation::InitiateEnrollment:
        return enrollment.enroll(connection, request);
    case Operation::InitiateReEnrollment:
        return enrollment.reEnroll(connection, request);
    case Operation::EnrollmentAuthReply:
        return enrollment.takeCookie(request);
    case Operation::CancelEnrollment:
        return enrollment.cancel(request);
    case Operation::InitiateUnenrollment:
        return unenrollment.unenroll(connection, request);
    case Operation::PerformConfigSync:
        return upkeep.syncConfig(request);
    case Operation::TriggerPostureReports:
        return upkeep.reportPosture();
    case Operation::DataplaneAuthReply:
        return dataplane.answer(request);
    case Operation::GetQuillApiFactory:
    case Operation::CreateApi:
    case Operation::Start:
    case Operation::Stop:
        return;
    }
}

void SimService::load(Scenario scenario) {
    core.run([&] {
        enrollment.abort();
        unenrollment.abort();
        core.restart(std::move(scenario));
    });
}

void SimService::set(const boost::json::object& knobs) {
    core.run([&] { core.change(knobs); });
}

std::string SimService::state() const {
    std::string text;
    core.read([&](const Scenario& scenario) {
        text = boost::json::serialize(boost::json::object{
            {"scenario", writeScenario(scenario)},
            {"enrollment", enrollment.describe()},
            {"unenrollment", unenrollment.describe()},
            {"connections", core.listenerCount()},
            {"pace", core.currentPace()},
            {"unix_time", core.now()},
        });
    });
    return text;
}

Logins SimService::logins() const {
    Logins present;
    core.read([&](const Scenario& scenario) {
        present = {scenario.enrollmentLogin, scenario.dataplaneLogin};
    });
    return present;
}

} // namespace sim
