// A service library as the other compiler builds it: its names, its pointers, its tables.
#include "tests/windows/msvc/Service.h"

#include "tests/windows/msvc/Runtime.h"
#include "wren/QuillApi.h"

namespace {

ServiceCounts counts;
uint32_t fault = serviceWorks;
char request[4096];

struct Failure {
    int code;
};

} // namespace

IQuillApiCallbacks::IQuillApiCallbacks() { ++counts.receiversMade; }
IQuillApiCallbacks::~IQuillApiCallbacks() { ++counts.receiversEnded; }

namespace {

/// The receiver, which several threads look at.
class Receiver {
public:
    void set(const std::weak_ptr<IQuillApiCallbacks>& given) {
        acquire();
        receiver = given;
        release();
    }
    std::weak_ptr<IQuillApiCallbacks> get() {
        acquire();
        std::weak_ptr<IQuillApiCallbacks> copy = receiver;
        release();
        return copy;
    }

private:
    void acquire() {
        while (_InterlockedCompareExchange(&isTaken, 1, 0) != 0) {
            Sleep(0);
        }
    }
    void release() { _InterlockedCompareExchange(&isTaken, 0, 1); }

    long volatile isTaken = 0;
    std::weak_ptr<IQuillApiCallbacks> receiver;
};
Receiver receiver;

QuillApiResult note(const char* operation, const char* json) {
    snprintf(request, sizeof request, "%s %s", operation, json);
    if (fault == serviceRequestThrows) {
        throw Failure{5};
    }
    return QuillApiResult::Success;
}

class Api final : public IQuillApi {
public:
    Api() { ++counts.connections; }
    ~Api() { --counts.connections; }

    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        receiver.set(callbacks);
        if (fault == serviceStartThrows) {
            throw Failure{4};
        }
        return fault == serviceStartFails ? QuillApiResult::NotConnected : QuillApiResult::Success;
    }
    QuillApiResult InitiateEnrollment(const char* json) override { return note("InitiateEnrollment", json); }
    QuillApiResult InitiateReEnrollment(const char* json) override {
        return note("InitiateReEnrollment", json);
    }
    QuillApiResult EnrollmentAuthReply(const char* json) override {
        return note("EnrollmentAuthReply", json);
    }
    QuillApiResult CancelEnrollment(const char* json) override { return note("CancelEnrollment", json); }
    QuillApiResult InitiateUnenrollment(const char* json) override {
        return note("InitiateUnenrollment", json);
    }
    QuillApiResult PerformConfigSync(const char* json) override { return note("PerformConfigSync", json); }
    QuillApiResult TriggerPostureReports(const char* json) override {
        return note("TriggerPostureReports", json);
    }
    QuillApiResult DataplaneAuthReply(const char* json) override { return note("DataplaneAuthReply", json); }
    QuillApiResult Stop() override { return QuillApiResult::Success; }
};

template <class Object>
class Block final : public std::_Ref_count_base {
public:
    explicit Block(Object* owned)
        : object(owned) {}
    void _Destroy() noexcept override { delete object; }
    void _Delete_this() noexcept override { delete this; }

private:
    Object* object;
};

class Factory final : public IQuillApiFactory {
public:
    QuillApiResult Reserved() override { return QuillApiResult::Unexpected; }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override {
        if (fault == serviceApiFails) {
            return QuillApiResult::BadResponse;
        }
        if (fault != serviceNullApi) {
            Api* const made = new Api;
            api = std::shared_ptr<IQuillApi>(made, new Block<Api>(made));
        }
        return QuillApiResult::Success;
    }
};

std::shared_ptr<IQuillApiFactory> factory;

struct Delivery {
    int document;
    const char* json;
    bool isDone;
};

unsigned long __stdcall deliver(void* argument) {
    auto* const delivery = static_cast<Delivery*>(argument);
    using Callback = void (IQuillApiCallbacks::*)(const char*);
    constexpr Callback callbacks[] = {
        &IQuillApiCallbacks::StatusNotification, &IQuillApiCallbacks::EnrollmentStatusNotification,
        &IQuillApiCallbacks::EnrollmentAuthRequest, &IQuillApiCallbacks::UnenrollmentStatusNotification,
        &IQuillApiCallbacks::DataplaneNotification};
    if (const std::shared_ptr<IQuillApiCallbacks> locked = receiver.get().lock()) {
        ((*locked.operator->()).*callbacks[delivery->document])(delivery->json);
        delivery->isDone = true;
    }
    return 0;
}

constexpr int mostThreads = 8;
Handle delivering[mostThreads];
int deliveringCount = 0;
const char* documentOfAll = nullptr; ///< null ends the threads

unsigned long __stdcall deliverAlways(void*) {
    while (const char* const json = *static_cast<const char* const volatile*>(&documentOfAll)) {
        if (const std::shared_ptr<IQuillApiCallbacks> locked = receiver.get().lock()) {
            locked->StatusNotification(json);
        }
        Sleep(0); // who ends the plugin needs its turn
    }
    return 0;
}

} // namespace

#ifdef WREN_TEST_CPP_LINKAGE
__declspec(dllexport) QuillApiResult getFactory(std::weak_ptr<IQuillApiFactory>& found) __asm__(
    "?GetQuillApiFactory@@YA?AW4QuillApiResult@@AAV?$weak_ptr@VIQuillApiFactory@@@std@@@Z");
QuillApiResult getFactory(std::weak_ptr<IQuillApiFactory>& found) {
#else
QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& found) {
#endif
    if (fault == serviceFactoryFails) {
        return QuillApiResult::NotFound;
    }
    if (!factory) {
        Factory* const made = new Factory;
        factory = std::shared_ptr<IQuillApiFactory>(made, new Block<Factory>(made));
    }
    found = factory;
    return QuillApiResult::Success;
}

void serviceSetFault(uint32_t chosen) {
    fault = chosen;
    if (fault == serviceFactoryGone) {
        factory = {};
    }
}

int serviceDeliver(int document, const char* json) {
    Delivery delivery{document, json, false};
    const Handle thread = CreateThread(nullptr, 0, &deliver, &delivery, 0, nullptr);
    WaitForSingleObject(thread, 0xFFFFFFFF);
    CloseHandle(thread);
    return delivery.isDone ? 1 : 0;
}

const char* serviceTakeRequest() {
    static char taken[sizeof request];
    memcpy(taken, request, sizeof request);
    request[0] = '\0';
    return taken;
}

void serviceDeliverAlways(int threads, const char* json) {
    documentOfAll = threads > 0 ? json : nullptr;
    while (deliveringCount < threads && deliveringCount < mostThreads) {
        delivering[deliveringCount++] = CreateThread(nullptr, 0, &deliverAlways, nullptr, 0, nullptr);
    }
    while (deliveringCount > 0 && threads == 0) {
        const Handle thread = delivering[--deliveringCount];
        WaitForSingleObject(thread, 0xFFFFFFFF);
        CloseHandle(thread);
    }
}

ServiceCounts serviceCounts() {
    counts.receiverUses = receiver.get().use_count();
    counts.factoryObservers = factory.weak_count();
    counts.isFactoryGone = factory ? 0 : 1;
    return counts;
}

extern "C" int __stdcall serviceMain(void*, unsigned long, void*) { return 1; }
