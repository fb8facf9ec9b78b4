#include "common/api/QuillApiDefsUtil.h"
#include "common/api/QuillApiResultText.h"
#include "presentation-plugin/PresentationPluginImpl.h"

namespace {

constexpr const char* factoryMissing = "QUILL API factory not initialized";
constexpr const char* createFailed = "Couldn't create QUILL API";
constexpr const char* startFailed = "Couldn't start QUILL API";
constexpr const char* stopFailed = "Couldn't stop QUILL API";

void logResult(std::string_view function, std::string_view failure, QuillApiResult result,
               int line = __builtin_LINE()) {
    COMMON2_LOG_AT(DBG_ERROR, common2::sourceName(__FILE__), line, function)
        << failure << ": " << quillApiResultName(result);
}

} // namespace

void PresentationPluginImpl::actionStartApi() {
    constexpr std::string_view function = "PresentationPluginImpl::actionStartApi";
    const std::shared_ptr<IQuillApiFactory> factory = apiFactory.lock();
    if (!factory) {
        COMMON2_LOG(DBG_ERROR, function) << factoryMissing;
        throw ApiError_ex(factoryMissing);
    }
    const QuillApiResult created = factory->CreateApi(api);
    if (created != QuillApiResult::Success || !api) {
        api.reset();
        logResult(function, createFailed, created);
        throw ApiError_ex(createFailed);
    }
    const QuillApiResult started = api->Start(self.pointer());
    if (started != QuillApiResult::Success) {
        api.reset();
        logResult(function, startFailed, started);
        throw ApiError_ex(startFailed);
    }
}

void PresentationPluginImpl::actionStopApi() {
    // A start that broke off for another reason than the backend's leaves nothing to stop.
    const QuillApiResult stopped = api ? api->Stop() : QuillApiResult::Success;
    if (stopped != QuillApiResult::Success) {
        logResult("PresentationPluginImpl::actionStopApi", stopFailed, stopped);
    }
    api.reset();
}

void PresentationPluginImpl::sendRequest(QuillApiResult (IQuillApi::*operation)(const char*),
                                         const std::string& request, const char* failure,
                                         std::string_view function) {
    const QuillApiResult result = api ? ((*api).*operation)(request.c_str()) : QuillApiResult::NotInitialized;
    if (result != QuillApiResult::Success) {
        logResult(function, failure, result);
        throw ApiError_ex(failure);
    }
}

void PresentationPluginImpl::actionApiInitiateEnrollment(const InitiateEnrollment_e& request) {
    sendRequest(
        &IQuillApi::InitiateEnrollment,
        initiateEnrollmentRequest(request.version, request.enrollment_choice_id, request.enrollment_context),
        "Couldn't initiate enrollment", "PresentationPluginImpl::actionApiInitiateEnrollment");
}

void PresentationPluginImpl::actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) {
    sendRequest(&IQuillApi::InitiateReEnrollment,
                enrollmentRequest(request.version, request.enrollment_id, request.enrollment_context),
                "Couldn't initiate re-enrollment", "PresentationPluginImpl::actionApiInitiateReEnrollment");
}

void PresentationPluginImpl::actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) {
    sendRequest(&IQuillApi::EnrollmentAuthReply,
                enrollmentAuthReplyRequest(request.version, request.enrollment_id, request.enrollment_cookie),
                "Couldn't submit enrollment auth reply",
                "PresentationPluginImpl::actionApiEnrollmentAuthReply");
}

void PresentationPluginImpl::actionApiCancelEnrollment(const CancelEnrollment_e& request) {
    sendRequest(&IQuillApi::CancelEnrollment, enrollmentIdRequest(request.version, request.enrollment_id),
                "Couldn't cancel enrollment", "PresentationPluginImpl::actionApiCancelEnrollment");
}

void PresentationPluginImpl::actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) {
    sendRequest(&IQuillApi::DataplaneAuthReply,
                dataplaneAuthReplyRequest(request.version, request.context_id, request.authorization_cookie),
                "Couldn't submit dataplane auth reply",
                "PresentationPluginImpl::actionApiDataplaneAuthReply");
}

void PresentationPluginImpl::actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) {
    sendRequest(&IQuillApi::InitiateUnenrollment,
                enrollmentRequest(request.version, request.enrollment_id, request.enrollment_context),
                "Couldn't initiate unenrollment", "PresentationPluginImpl::actionApiInitiateUnenrollment");
}

void PresentationPluginImpl::actionApiPerformConfigSync(const PerformConfigSync_e& request) {
    sendRequest(&IQuillApi::PerformConfigSync, enrollmentIdRequest(request.version, request.enrollment_id),
                "Couldn't perform config sync", "PresentationPluginImpl::actionApiPerformConfigSync");
}

void PresentationPluginImpl::actionApiTriggerPostureReports(const TriggerPostureReports_e& request) {
    sendRequest(&IQuillApi::TriggerPostureReports, versionRequest(request.version),
                "Couldn't trigger posture reports", "PresentationPluginImpl::actionApiTriggerPostureReports");
}

void PresentationPluginImpl::actionDisplayApiErrorInternal() {
    renderTile(UiNoticeType::Update, {.status = "Kestrel Suite error. Contact your IT help desk.",
                                      .trayText = "Kestrel Suite error",
                                      .trayState = UiTrayState::Error});
    updateAdvEnrollmentInactive(false);
    updateAdvConfigSyncInactive();
}
