#include "tests/module/unload/BusyService.h"

#include "wren/QuillApi.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

IQuillApiCallbacks::IQuillApiCallbacks() = default;
IQuillApiCallbacks::~IQuillApiCallbacks() = default;

namespace {

constexpr const char* document =
    R"({"version":"1.0","service_status":"started","enrollment_status":{"status":"not_enrolled"}})";

std::mutex mutex;
std::weak_ptr<IQuillApiCallbacks> receiver; ///< under the mutex
bool keepsReceiver = false;                 ///< likewise

std::vector<std::thread> threads;
std::atomic<bool> isEnding = false;
std::atomic<unsigned long> deliveries = 0;

std::weak_ptr<IQuillApiCallbacks> currentReceiver() {
    const std::lock_guard lock(mutex);
    return receiver;
}

void setReceiver(std::weak_ptr<IQuillApiCallbacks> given) {
    const std::lock_guard lock(mutex);
    receiver.swap(given);
}

void deliver() {
    const std::weak_ptr<IQuillApiCallbacks> observed = currentReceiver();
    if (const std::shared_ptr<IQuillApiCallbacks> locked = observed.lock()) {
        locked->StatusNotification(document);
        ++deliveries;
    }
}

class BusyApi final : public IQuillApi {
public:
    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        setReceiver(std::move(callbacks));
        return QuillApiResult::Success;
    }
    QuillApiResult InitiateEnrollment(const char*) override { return QuillApiResult::Success; }
    QuillApiResult InitiateReEnrollment(const char*) override { return QuillApiResult::Success; }
    QuillApiResult EnrollmentAuthReply(const char*) override { return QuillApiResult::Success; }
    QuillApiResult CancelEnrollment(const char*) override { return QuillApiResult::Success; }
    QuillApiResult InitiateUnenrollment(const char*) override { return QuillApiResult::Success; }
    QuillApiResult PerformConfigSync(const char*) override { return QuillApiResult::Success; }
    QuillApiResult TriggerPostureReports(const char*) override { return QuillApiResult::Success; }
    QuillApiResult DataplaneAuthReply(const char*) override { return QuillApiResult::Success; }
    QuillApiResult Stop() override {
        const std::lock_guard lock(mutex);
        if (!keepsReceiver) {
            receiver.reset();
        }
        return QuillApiResult::Success;
    }
};

class BusyFactory final : public IQuillApiFactory {
public:
    QuillApiResult Reserved() override { return QuillApiResult::NotImplemented; }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override {
        api = std::make_shared<BusyApi>();
        return QuillApiResult::Success;
    }
};

} // namespace

QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    static const auto only = std::make_shared<BusyFactory>();
    factory = only;
    return QuillApiResult::Success;
}

void busyBegin(unsigned count) {
    isEnding = false;
    while (threads.size() < count) {
        threads.emplace_back([] {
            while (!isEnding) {
                deliver();
                std::this_thread::yield(); // who ends the plugin needs its turn
            }
        });
    }
}

void busyEnd() {
    isEnding = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
}

unsigned long busyDeliveries() { return deliveries; }

void busyKeepReceiver(bool kept) {
    const std::lock_guard lock(mutex);
    keepsReceiver = kept;
}

void busyForgetReceiver() { setReceiver({}); }
