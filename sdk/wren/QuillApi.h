/// The backend contract: the surface of the library `kes_wren_api` that stands between the plugin and the
/// background service. Requests and notifications are JSON texts, NUL-terminated UTF-8, valid during the
/// call only. The order of virtual operations is fixed in every class here. Nothing here throws.
#pragma once

#include "wren/Export.h"

#include <cstdint>
#include <memory>

/// Results of the library's operations.
enum class QuillApiResult : std::uint32_t {
    Success = 0,
    BadParameter = 1,
    Unexpected = 2,
    NullPointer = 3,
    InsufficientBuffer = 4,
    NotImplemented = 5,
    NotInitialized = 6,
    NotFound = 7,
    InvalidState = 8,
    NotSupported = 9,
    ResourceInUse = 10,
    Canceled = 11,
    Exception = 12,
    BadResponse = 13,
    BadFormat = 14,
    AllocFailed = 15,
    NotConnected = 16,
    RequestFailed = 17,
    RequestTimedOut = 18,
    AuthRequestTimedOut = 19,
    ApprovalRequired = 20,
    RebootRequired = 21,
    CodeSignCheckFailed = 22,
    LoadFailed = 23,
    ConnectionTerminating = 24,
    ExpiredPointer = 25,
    ResourceUnavailable = 26,
    Duplicate = 27,
    Eof = 28,
    BadHandle = 29,
};

/// How the library tells of news. It calls on threads of its own and holds its receiver weakly: it locks the
/// weak pointer around every call. Constructor and destructor stand in the library.
class WREN_BACKEND_API IQuillApiCallbacks {
public:
    IQuillApiCallbacks();
    IQuillApiCallbacks(const IQuillApiCallbacks&) = delete;
    IQuillApiCallbacks& operator=(const IQuillApiCallbacks&) = delete;

    /// Each takes the JSON text of its document, which must not be null.
    virtual void StatusNotification(const char* json) = 0;
    virtual void EnrollmentStatusNotification(const char* json) = 0;
    virtual void EnrollmentAuthRequest(const char* json) = 0;
    virtual void UnenrollmentStatusNotification(const char* json) = 0;
    virtual void DataplaneNotification(const char* json) = 0;

    virtual ~IQuillApiCallbacks();
};

/// One connection to the service. Requests are single JSON objects whose values are all strings; the keys of
/// each are given in their order.
class IQuillApi {
public:
    /// Starts delivering documents to `callbacks`, possibly before this call returns.
    virtual QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) = 0;
    /// "version", "enrollment_choice_id", "enrollment_context"
    virtual QuillApiResult InitiateEnrollment(const char* json) = 0;
    /// "version", "enrollment_id", "enrollment_context"
    virtual QuillApiResult InitiateReEnrollment(const char* json) = 0;
    /// "version", "enrollment_id", "enrollment_cookie"
    virtual QuillApiResult EnrollmentAuthReply(const char* json) = 0;
    /// "version", "enrollment_id"
    virtual QuillApiResult CancelEnrollment(const char* json) = 0;
    /// "version", "enrollment_id", "enrollment_context"
    virtual QuillApiResult InitiateUnenrollment(const char* json) = 0;
    /// "version", "enrollment_id"
    virtual QuillApiResult PerformConfigSync(const char* json) = 0;
    /// "version"
    virtual QuillApiResult TriggerPostureReports(const char* json) = 0;
    /// "version", "context_id", "authorization_cookie"
    virtual QuillApiResult DataplaneAuthReply(const char* json) = 0;
    /// Stops delivering. Must return while a callback is still waiting inside the plugin.
    virtual QuillApiResult Stop() = 0;

protected:
    ~IQuillApi() = default;
};

/// Makes connections. Held weakly by its users: it lives as long as the library wants.
class IQuillApiFactory {
public:
    /// Keeps its place in the table; not called.
    virtual QuillApiResult Reserved() = 0;

    /// @param api receives the new connection on success
    virtual QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) = 0;

protected:
    ~IQuillApiFactory() = default;
};

extern "C" {
/// @param factory receives the library's factory on success
WREN_BACKEND_API QuillApiResult WREN_CALL GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory);
}
