#include "backend-sim/ScenarioFields.h"

#include <limits>
#include <vector>

namespace sim {
namespace {

constexpr std::uint32_t anyNumber = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t largestPort = std::numeric_limits<std::uint16_t>::max();

template <class Record>
class RecordsOf final : public RecordList {
public:
    using Visit = void (*)(FieldVisitor&, Record&);

    RecordsOf(std::vector<Record>& shown, Visit visitRecord)
        : records(shown)
        , visitFields(visitRecord) {}

    std::size_t size() const override { return records.size(); }
    void clear() override { records.clear(); }
    void add() override { records.emplace_back(); }
    void visit(std::size_t index, FieldVisitor& visitor) override { visitFields(visitor, records[index]); }

private:
    std::vector<Record>& records;
    Visit visitFields;
};

template <class Record>
void visitList(FieldVisitor& visitor, std::string_view key, std::vector<Record>& records,
               void (*visitRecord)(FieldVisitor&, Record&)) {
    RecordsOf<Record> list(records, visitRecord);
    visitor.list(key, list);
}

void visitWord(FieldVisitor& visitor, std::string_view key, Word& value, Words words) {
    visitor.word(key, value, words, Presence::Optional);
}

void visitNumber(FieldVisitor& visitor, std::string_view key, std::uint32_t& value) {
    visitor.number(key, value, 0, anyNumber);
}

void visitChoice(FieldVisitor& visitor, Choice& choice) {
    visitor.name("id", choice.id, Presence::Required);
    visitor.text("type", choice.type);
    visitor.text("label", choice.label);
    visitor.text("state", choice.state);
    visitor.flag("enroll_allowed", choice.enrollAllowed);
}

void visitEnrollment(FieldVisitor& visitor, Enrollment& enrollment) {
    visitor.name("id", enrollment.id, Presence::Optional);
    visitor.text("type", enrollment.type);
    visitor.text("label", enrollment.label);
    visitor.text("state", enrollment.state);
    visitor.text("substate", enrollment.substate);
    visitor.time("time", enrollment.time);
    visitor.flag("unenroll_allowed", enrollment.unenrollAllowed);
    visitor.flag("reenroll_allowed", enrollment.reenrollAllowed);
}

void visitCertificate(FieldVisitor& visitor, Certificate& certificate) {
    visitWord(visitor, "certificate", certificate.state, words::certificate);
    visitWord(visitor, "certificate_renewal", certificate.renewal, words::certificateRenewal);
    visitor.time("certificate_expires", certificate.expires);
    visitNumber(visitor, "certificate_lifetime_s", certificate.lifetime);
    visitor.time("certificate_last_renewal_attempt", certificate.lastRenewalAttempt);
    visitNumber(visitor, "certificate_failed_renewals", certificate.failedRenewals);
}

void visitIdentity(FieldVisitor& visitor, Identity& identity) {
    visitor.text("org_id", identity.orgId);
    visitor.text("user_id", identity.userId);
    visitor.text("plv_id", identity.plvId);
    visitor.text("quill_device_id", identity.deviceId);
    visitor.text("user_name", identity.userName);
}

void visitConfigSync(FieldVisitor& visitor, ConfigSync& sync) {
    visitWord(visitor, "config_sync_server", sync.server, words::server);
    visitNumber(visitor, "config_sync_interval_min", sync.intervalMinutes);
    visitor.time("config_sync_last_success", sync.lastSuccess);
    visitNumber(visitor, "config_sync_failures", sync.failures);
}

void visitCounters(FieldVisitor& visitor, std::string_view key, FlowCounters& counters) {
    visitor.object(key, [&](FieldVisitor& inner) {
        for (std::size_t i = 0; i < counters.size(); ++i) {
            visitNumber(inner, flowCounterNames[i], counters[i]);
        }
    });
}

void visitProxy(FieldVisitor& visitor, Proxy& proxy) {
    visitor.text("label", proxy.label);
    visitor.text("status", proxy.status);
}

void visitFingerprint(FieldVisitor& visitor, Fingerprint& fingerprint) {
    visitor.text("label", fingerprint.label);
    visitWord(visitor, "status", fingerprint.status, words::fingerprint);
}

void visitDestination(FieldVisitor& visitor, Destination& destination) {
    visitor.text("host", destination.host);
    visitor.number("port", destination.port, 0, largestPort);
    visitWord(visitor, "proto", destination.protocol, words::protocol);
}

void visitAlert(FieldVisitor& visitor, DataplaneAlert& alert) {
    visitWord(visitor, "category", alert.category, words::alertCategory);
    visitNumber(visitor, "code", alert.code);
    visitor.time("time", alert.time);
    visitor.text("title", alert.title);
    visitor.text("short_message", alert.shortMessage);
    visitor.text("long_message", alert.longMessage);
    visitor.text("tile_message", alert.tileMessage);
    visitor.text("toast_message", alert.toastMessage);
    visitor.text("url", alert.url);
    visitor.text("url_label", alert.urlLabel);
    visitList(visitor, "destinations", alert.destinations, visitDestination);
}

void visitAuthRequest(FieldVisitor& visitor, DataplaneAuthRequest& request) {
    visitor.name("context_id", request.contextId, Presence::Required);
    visitor.time("time", request.time);
    visitor.object("destination", [&](FieldVisitor& inner) { visitDestination(inner, request.destination); });
}

void visitDelays(FieldVisitor& visitor, Delays& delays) {
    visitNumber(visitor, "first_status", delays.firstStatus);
    visitNumber(visitor, "status_interval", delays.statusInterval);
    visitNumber(visitor, "enrollment_started", delays.enrollmentStarted);
    visitNumber(visitor, "authentication_request", delays.authenticationRequest);
    visitNumber(visitor, "login_failure", delays.loginFailure);
    visitNumber(visitor, "registration", delays.registration);
    visitNumber(visitor, "cancellation", delays.cancellation);
    visitNumber(visitor, "unenrollment_started", delays.unenrollmentStarted);
    visitNumber(visitor, "unenrollment", delays.unenrollment);
    visitNumber(visitor, "config_sync", delays.configSync);
    visitNumber(visitor, "posture_report", delays.postureReport);
    visitNumber(visitor, "dataplane_reply", delays.dataplaneReply);
}

void visitLogin(FieldVisitor& visitor, Login& login) {
    visitor.name("start_url", login.startUrl, Presence::Optional);
    visitor.name("end_url", login.endUrl, Presence::Optional);
    visitor.name("cookie_name", login.cookieName, Presence::Optional);
    visitor.text("cookie", login.cookie);
    visitor.name("password", login.password, Presence::Optional);
}

void visitLogins(FieldVisitor& visitor, Scenario& scenario) {
    visitor.object("enrollment", [&](FieldVisitor& inner) { visitLogin(inner, scenario.enrollmentLogin); });
    visitor.object("dataplane", [&](FieldVisitor& inner) { visitLogin(inner, scenario.dataplaneLogin); });
}

void visitFault(FieldVisitor& visitor, Fault& fault) {
    visitor.word("when", fault.when, words::moment, Presence::Required);
    visitNumber(visitor, "skip", fault.skip);
    visitor.number("times", fault.times, 1, anyNumber);
    const bool canFail = fault.when.empty() || !failuresAt(fault.when).empty();
    const bool isUnenrollment = fault.when == moment::unenrollmentStarted;
    visitWord(visitor, "fail", fault.fail,
              isUnenrollment ? Words(words::unenrollmentFailure) : Words(words::enrollmentFailure));
    visitor.rule(fault.fail.empty() || canFail, "fail",
                 "nothing can fail at '" + std::string(fault.when) + "'");
    visitor.knobs("set", fault.set);
    visitor.rule(!fault.fail.empty() || !fault.set.empty(), {}, "has neither 'fail' nor 'set'");
}

void visitSections(FieldVisitor& visitor, Scenario& scenario) {
    visitor.object("device", [&](FieldVisitor& inner) { visitDevice(inner, scenario.device); });
    visitor.object("delays", [&](FieldVisitor& inner) { visitDelays(inner, scenario.delays); });
    visitor.object("logins", [&](FieldVisitor& inner) { visitLogins(inner, scenario); });
    visitList(visitor, "faults", scenario.faults, visitFault);
}

} // namespace

void visitDevice(FieldVisitor& visitor, Device& device) {
    visitWord(visitor, "service_error", device.serviceError, words::serviceError);
    visitWord(visitor, "service_status", device.serviceStatus, words::serviceStatus);
    visitWord(visitor, "interceptor", device.interceptor, words::interceptor);
    visitWord(visitor, "posture", device.posture, words::posture);
    visitWord(visitor, "hw_key_store", device.keyStore, words::keyStore);
    visitList(visitor, "choices", device.choices, visitChoice);
    visitor.flag("enrolled", device.isEnrolled);
    visitor.object("enrollment", [&](FieldVisitor& inner) { visitEnrollment(inner, device.enrollment); });
    visitCertificate(visitor, device.certificate);
    visitor.object("identity", [&](FieldVisitor& inner) { visitIdentity(inner, device.identity); });
    visitConfigSync(visitor, device.configSync);
    visitWord(visitor, "dataplane_server", device.dataplaneServer, words::server);
    visitCounters(visitor, "flows", device.flows);
    visitCounters(visitor, "traffic", device.traffic);
    visitList(visitor, "proxies", device.proxies, visitProxy);
    visitList(visitor, "fingerprints", device.fingerprints, visitFingerprint);
    visitList(visitor, "dataplane_alerts", device.dataplaneAlerts, visitAlert);
    visitList(visitor, "dataplane_auth_requests", device.dataplaneAuthRequests, visitAuthRequest);
}

void visitScenario(FieldVisitor& visitor, Scenario& scenario) {
    visitor.remark("$schema");
    visitSections(visitor, scenario);
}

void visitKnobs(FieldVisitor& visitor, Scenario& scenario) {
    visitDevice(visitor, scenario.device);
    visitSections(visitor, scenario);
}

} // namespace sim
