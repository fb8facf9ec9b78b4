#include "bench/SilentBackend.h"

#include <utility>

namespace bench {
namespace {

std::weak_ptr<IQuillApiCallbacks> receiver;

/// A connection that answers every request with success.
class SilentApi final : public IQuillApi {
public:
    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        receiver = std::move(callbacks);
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
    QuillApiResult Stop() override { return QuillApiResult::Success; }
};

class SilentFactory final : public IQuillApiFactory {
public:
    QuillApiResult Reserved() override { return QuillApiResult::Success; }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override {
        api = std::make_shared<SilentApi>();
        return QuillApiResult::Success;
    }
};

} // namespace

std::shared_ptr<IQuillApiCallbacks> takeReceiver() { return std::exchange(receiver, {}).lock(); }

} // namespace bench

/// The module asks for its backend by this name, and the program is asked before any library.
QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    static const auto silentFactory = std::make_shared<bench::SilentFactory>();
    factory = silentFactory;
    return QuillApiResult::Success;
}
