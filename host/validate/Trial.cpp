#include "host/validate/Trial.h"

#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/validate/Documents.h"

#include <boost/json/serialize.hpp>

#include <utility>

namespace host::validate {

namespace json = boost::json;

Trial::Trial(std::filesystem::path moduleFile, PluginInterface way, std::uint64_t seed)
    : file(std::move(moduleFile))
    , usedWay(way)
    , ownDice(seed)
    , log([this](const LogRecord& record) { add({.kind = Arrival::Kind::Log, .record = record}); })
    , ownCallbacks(
          [this](std::uintptr_t handle, const char* xml) {
              add({.kind = Arrival::Kind::Notice, .text = xml != nullptr ? xml : "", .handle = handle});
          },
          [this](std::uintptr_t handle) { add({.kind = Arrival::Kind::StopDone, .handle = handle}); }) {
    load(R"({"global":"DBG_TRACE"})");
}

Trial::~Trial() { unload(); }

void Trial::reload(const std::string& settings) {
    unload();
    load(settings);
}

void Trial::load(const std::string& settings) {
    loaded.emplace(loadModuleWithSettings(file, settings));
    if (usedWay == PluginInterface::C && !loaded->hasCRecord()) {
        throw HostError("the module offers no record of C functions");
    }
    if (usedWay == PluginInterface::Cpp) {
        loaded->requireUsableClass();
    }
    controls.emplace();
    controls->setQuiet(true);
    controls->observe(&Trial::onRequest, this);
}

void Trial::unload() {
    object.reset();
    if (controls) {
        controls->observe(nullptr, nullptr);
        // Receivers that it remembers for late documents would cost memory at each unloading.
        controls->forgetReceivers();
        controls->reset();
        controls.reset();
    }
    loaded.reset();
}

void Trial::add(Arrival arrival) {
    const std::lock_guard lock(mutex);
    arrivals.push_back(std::move(arrival));
}

std::vector<Arrival> Trial::take() {
    const std::lock_guard lock(mutex);
    return std::exchange(arrivals, {});
}

void Trial::onRequest(void* context, std::uint64_t, const char* operation, const char* json) {
    static_cast<Trial*>(context)->add(
        {.kind = Arrival::Kind::Request,
         .text = json != nullptr ? joined({operation, " ", json}) : std::string(operation)});
}

PluginObject& Trial::create() {
    object.reset();
    object = makePlugin(*loaded, usedWay);
    expect(object != nullptr, "the module makes no object");
    return *object;
}

Step Trial::dispose() {
    return step([this] {
        const bool isDone = object->dispose();
        object.reset();
        return isDone ? 1 : 0;
    });
}

Step Trial::step(const std::function<std::int32_t()>& call) {
    take();
    const std::int32_t result = call();
    return {result, take()};
}

Step Trial::registerHost(std::uintptr_t handle) {
    return step([&] { return object->Register("", handle, &ownCallbacks, &ownTranslator); });
}

Step Trial::start() {
    return step([this] { return object->Start(); });
}

Step Trial::stop(std::uint32_t reason) {
    return step([&] { return object->Stop(reason); });
}

Step Trial::unregister() {
    return step([this] { return object->Unregister(); });
}

Step Trial::begin() {
    create();
    expectEqual("Register", registerHost().result, presentationDone);
    Step started = start();
    expectEqual("Start", started.result, presentationDone);
    return started;
}

Step Trial::event(std::string_view xml) {
    return step([&, text = std::string(xml)] { return object->EventNotification(text.c_str()); });
}

Step Trial::press(std::string_view control) {
    return event(joined({"<vtguiEvent id=\"", control, "_OnPress\"/>"}));
}

Step Trial::deliver(WrenSimDocument document, std::string_view json) {
    Step delivered = step([&, text = std::string(json)] {
        return static_cast<std::int32_t>(
            controls->deliverAndWait(WRENSIM_LATEST_API, document, text.c_str()));
    });
    expect(delivered.result == wrensim_delivered, "the backend has nobody to give a document to");
    return delivered;
}

Step Trial::status(const json::value& document) {
    return deliver(wrensim_status_notification, json::serialize(document));
}

Step Trial::dataplane(const json::value& document) {
    return deliver(wrensim_dataplane_notification, json::serialize(document));
}

Step Trial::enrollment(std::string_view status, std::string_view substatus) {
    return deliver(wrensim_enrollment_status_notification,
                   json::serialize(progressDocument(status, substatus)));
}

Step Trial::unenrollment(std::string_view status, std::string_view substatus) {
    return deliver(wrensim_unenrollment_status_notification,
                   json::serialize(progressDocument(status, substatus)));
}

Step Trial::login() { return deliver(wrensim_enrollment_auth_request, json::serialize(loginDocument())); }

void Trial::expectUsable() {
    status(errorDocument("ipc_failure")); // aborts whatever runs, in every state but one
    enrollment("complete", "cancelled");
    status(enrolledDocument());
    const Lines offered = status(notEnrolledDocument()).requests();
    expectEqual("requests on a status", offered, {});
    const Step enrolling = press("quill_tile_enroll_action_btn");
    expectEqual("requests on the next enrollment", enrolling.requests(),
                {R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                 R"("enrollment_context":""})"});
}

} // namespace host::validate
