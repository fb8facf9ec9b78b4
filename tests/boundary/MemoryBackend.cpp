#include "tests/boundary/MemoryBackend.h"

#include <string>

IQuillApiCallbacks::IQuillApiCallbacks() = default;
IQuillApiCallbacks::~IQuillApiCallbacks() = default;

QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    return test::MemoryBackend::instance().getFactory(factory);
}

namespace test {
namespace {

class MemoryApi final : public IQuillApi {
public:
    MemoryApi() { backend().countConnection(1); }
    MemoryApi(const MemoryApi&) = delete;
    MemoryApi& operator=(const MemoryApi&) = delete;
    ~MemoryApi() { backend().countConnection(-1); }

    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        backend().setReceiver(callbacks);
        return backend().enter(BackendCall::Start, nullptr);
    }
    QuillApiResult InitiateEnrollment(const char* json) override {
        return backend().enter(BackendCall::InitiateEnrollment, json);
    }
    QuillApiResult InitiateReEnrollment(const char* json) override {
        return backend().enter(BackendCall::InitiateReEnrollment, json);
    }
    QuillApiResult EnrollmentAuthReply(const char* json) override {
        return backend().enter(BackendCall::EnrollmentAuthReply, json);
    }
    QuillApiResult CancelEnrollment(const char* json) override {
        return backend().enter(BackendCall::CancelEnrollment, json);
    }
    QuillApiResult InitiateUnenrollment(const char* json) override {
        return backend().enter(BackendCall::InitiateUnenrollment, json);
    }
    QuillApiResult PerformConfigSync(const char* json) override {
        return backend().enter(BackendCall::PerformConfigSync, json);
    }
    QuillApiResult TriggerPostureReports(const char* json) override {
        return backend().enter(BackendCall::TriggerPostureReports, json);
    }
    QuillApiResult DataplaneAuthReply(const char* json) override {
        return backend().enter(BackendCall::DataplaneAuthReply, json);
    }
    QuillApiResult Stop() override { return backend().enter(BackendCall::Stop, nullptr); }

private:
    static MemoryBackend& backend() { return MemoryBackend::instance(); }
};

class MemoryFactory final : public IQuillApiFactory {
public:
    QuillApiResult Reserved() override { return QuillApiResult::Success; }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override {
        return MemoryBackend::instance().createApi(api);
    }
};

} // namespace

void deliver(IQuillApiCallbacks& receiver, Document document, const char* json) {
    static constexpr std::array<void (IQuillApiCallbacks::*)(const char*), documentCount> callbacks{
        &IQuillApiCallbacks::StatusNotification, &IQuillApiCallbacks::EnrollmentStatusNotification,
        &IQuillApiCallbacks::EnrollmentAuthRequest, &IQuillApiCallbacks::UnenrollmentStatusNotification,
        &IQuillApiCallbacks::DataplaneNotification};
    (receiver.*callbacks[static_cast<std::size_t>(document)])(json);
}

MemoryBackend& MemoryBackend::instance() {
    static MemoryBackend backend;
    return backend;
}

MemoryBackend::MemoryBackend() { renewFactory(); }

void MemoryBackend::reset() {
    results.fill(QuillApiResult::Success);
    for (auto& calls : counts) {
        calls = 0;
    }
    givesNoApi = false;
    hook = nullptr;
    latest.reset();
    renewFactory();
}

void MemoryBackend::expireFactory() { currentFactory.reset(); }

void MemoryBackend::renewFactory() {
    if (!currentFactory) {
        currentFactory = std::make_shared<MemoryFactory>();
    }
}

void MemoryBackend::deliver(Document document, std::string_view json) const {
    if (const auto callbacks = receiver()) {
        test::deliver(*callbacks, document, std::string(json).c_str());
    }
}

QuillApiResult MemoryBackend::enter(BackendCall call, const char* json) {
    ++counts[index(call)];
    if (hook) {
        hook(call, json);
    }
    return results[index(call)];
}

QuillApiResult MemoryBackend::getFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    const QuillApiResult result = enter(BackendCall::GetQuillApiFactory, nullptr);
    if (result == QuillApiResult::Success) {
        factory = currentFactory;
    }
    return result;
}

QuillApiResult MemoryBackend::createApi(std::shared_ptr<IQuillApi>& api) {
    const QuillApiResult result = enter(BackendCall::CreateApi, nullptr);
    if (result == QuillApiResult::Success && !givesNoApi) {
        api = std::make_shared<MemoryApi>();
    }
    return result;
}

} // namespace test
