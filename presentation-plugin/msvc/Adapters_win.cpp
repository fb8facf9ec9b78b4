#include "presentation-plugin/msvc/Adapters.h"

#include "common2/logging/Common2Loggers.h"
#include "common2/util/ForeignCall.h"
#include "presentation-plugin/IPresentationPluginSmCallbacks.h"

#include <string_view>
#include <utility>

namespace msvc {
namespace {

/// One connection of the library.
class ApiAdapter final : public IQuillApi {
public:
    ApiAdapter(std::shared_ptr<Api> made, FindReceiver find)
        : api(std::move(made))
        , findReceiver(std::move(find)) {}

    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        const WeakPointer<Callbacks> receiver = findReceiver(callbacks);
        return guardedCall("IQuillApi::Start", [&] { return api->Start(receiver); });
    }
    QuillApiResult InitiateEnrollment(const char* json) override {
        return request("IQuillApi::InitiateEnrollment", &Api::InitiateEnrollment, json);
    }
    QuillApiResult InitiateReEnrollment(const char* json) override {
        return request("IQuillApi::InitiateReEnrollment", &Api::InitiateReEnrollment, json);
    }
    QuillApiResult EnrollmentAuthReply(const char* json) override {
        return request("IQuillApi::EnrollmentAuthReply", &Api::EnrollmentAuthReply, json);
    }
    QuillApiResult CancelEnrollment(const char* json) override {
        return request("IQuillApi::CancelEnrollment", &Api::CancelEnrollment, json);
    }
    QuillApiResult InitiateUnenrollment(const char* json) override {
        return request("IQuillApi::InitiateUnenrollment", &Api::InitiateUnenrollment, json);
    }
    QuillApiResult PerformConfigSync(const char* json) override {
        return request("IQuillApi::PerformConfigSync", &Api::PerformConfigSync, json);
    }
    QuillApiResult TriggerPostureReports(const char* json) override {
        return request("IQuillApi::TriggerPostureReports", &Api::TriggerPostureReports, json);
    }
    QuillApiResult DataplaneAuthReply(const char* json) override {
        return request("IQuillApi::DataplaneAuthReply", &Api::DataplaneAuthReply, json);
    }
    QuillApiResult Stop() override {
        return guardedCall("IQuillApi::Stop", [&] { return api->Stop(); });
    }

private:
    QuillApiResult request(std::string_view name, QuillApiResult (Api::*operation)(const char*),
                           const char* json) {
        return guardedCall(name, [&] { return ((*api).*operation)(json); });
    }

    const std::shared_ptr<Api> api;
    const FindReceiver findReceiver;
};

} // namespace

QuillApiResult guardedCall(std::string_view operation, const std::function<QuillApiResult()>& call) {
    QuillApiResult result = QuillApiResult::Exception;
    if (!common2::foreignCall([&] { result = call(); })) {
        COMMON2_LOG(DBG_ERROR, operation) << "The backend library ended the call with an exception";
    }
    return result;
}

FactoryAdapter::FactoryAdapter(Observer<ApiFactory> observed, FindReceiver find)
    : factory(std::move(observed))
    , findReceiver(std::move(find)) {}

QuillApiResult FactoryAdapter::Reserved() { return QuillApiResult::NotImplemented; }

QuillApiResult FactoryAdapter::CreateApi(std::shared_ptr<IQuillApi>& api) {
    constexpr const char* gone = "QUILL API factory not initialized";
    const std::shared_ptr<ApiFactory> locked = factory.lock();
    if (!locked) {
        COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::actionStartApi") << gone;
        throw ApiError_ex(gone);
    }
    SharedPointer<Api> made;
    const QuillApiResult result =
        guardedCall("IQuillApiFactory::CreateApi", [&] { return locked->CreateApi(made); });
    std::shared_ptr<Api> owned = adopt(made);
    if (result == QuillApiResult::Success && owned) {
        api = std::make_shared<ApiAdapter>(std::move(owned), findReceiver);
    }
    return result;
}

} // namespace msvc
