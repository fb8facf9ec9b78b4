/// @file
/// The backend contract: the surface of the library `kes_wren_api` that stands between the plugin and the
/// background service. Requests and notifications are JSON texts, NUL-terminated UTF-8, valid during the
/// call only. The order of virtual operations is fixed in every class here. Nothing here throws.
#pragma once

#include "wren/Export.h"

#include <cstdint>
#include <memory>

/// Results of the library's operations.
///
/// Anything but `Success` fails the operation, whatever the reason.
enum class QuillApiResult : std::uint32_t {
    Success = 0,                ///< it is done
    BadParameter = 1,           ///< an argument or a document is not as it must be
    Unexpected = 2,             ///< something that should not happen
    NullPointer = 3,            ///< a null argument
    InsufficientBuffer = 4,     ///< a buffer is too small
    NotImplemented = 5,         ///< there is no such operation yet
    NotInitialized = 6,         ///< not set up, or not any more
    NotFound = 7,               ///< what is named is not there
    InvalidState = 8,           ///< not possible at the moment
    NotSupported = 9,           ///< not possible here
    ResourceInUse = 10,         ///< somebody else has it
    Canceled = 11,              ///< called off
    Exception = 12,             ///< an exception was thrown inside
    BadResponse = 13,           ///< the other side answered something unreadable
    BadFormat = 14,             ///< a text or file is not in its format
    AllocFailed = 15,           ///< no memory
    NotConnected = 16,          ///< no connection to the service
    RequestFailed = 17,         ///< the service refused the request
    RequestTimedOut = 18,       ///< the service did not answer in time
    AuthRequestTimedOut = 19,   ///< the user did not log in in time
    ApprovalRequired = 20,      ///< an administrator has to approve
    RebootRequired = 21,        ///< the device has to be started anew
    CodeSignCheckFailed = 22,   ///< a file is not signed as it must be
    LoadFailed = 23,            ///< a library could not be loaded
    ConnectionTerminating = 24, ///< the connection is being closed
    ExpiredPointer = 25,        ///< the object has gone
    ResourceUnavailable = 26,   ///< nothing is left of it
    Duplicate = 27,             ///< it is there already
    Eof = 28,                   ///< nothing follows
    BadHandle = 29,             ///< the handle is not one
};

/// How the library tells of news. It calls on threads of its own and holds its receiver weakly: it locks the
/// weak pointer around every call. Constructor and destructor stand in the library.
class WREN_BACKEND_API IQuillApiCallbacks {
public:
    /// Defined in the library.
    IQuillApiCallbacks();
    /// A receiver is one object, held by one weak pointer.
    IQuillApiCallbacks(const IQuillApiCallbacks&) = delete;
    /// Likewise.
    IQuillApiCallbacks& operator=(const IQuillApiCallbacks&) = delete;

    /// The whole state of device and service. Like each of these it takes the JSON text of its document,
    /// which must not be null, and returns when the host has all that comes of it.
    virtual void StatusNotification(const char* json) = 0;
    /// How an enrollment goes.
    virtual void EnrollmentStatusNotification(const char* json) = 0;
    /// An enrollment needs its user to log in.
    virtual void EnrollmentAuthRequest(const char* json) = 0;
    /// How an unenrollment goes.
    virtual void UnenrollmentStatusNotification(const char* json) = 0;
    /// All alerts and logins that destinations ask for.
    virtual void DataplaneNotification(const char* json) = 0;

    /// Defined in the library.
    virtual ~IQuillApiCallbacks();
};

/// One connection to the service. Requests are single JSON objects whose values are all strings; the keys of
/// each are given in their order.
class IQuillApi {
public:
    /// Starts delivering documents, possibly before this call returns, but never on the thread that made it:
    /// the plugin's lock is held, and the delivery would wait for it for ever.
    /// @param callbacks locked around each call, and not kept alive
    virtual QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) = 0;
    /// Begins an enrollment: "version", "enrollment_choice_id", "enrollment_context"
    virtual QuillApiResult InitiateEnrollment(const char* json) = 0;
    /// Renews an enrollment: "version", "enrollment_id", "enrollment_context"
    virtual QuillApiResult InitiateReEnrollment(const char* json) = 0;
    /// Hands over the cookie of a login; an empty one where the browser failed: "version", "enrollment_id",
    /// "enrollment_cookie"
    virtual QuillApiResult EnrollmentAuthReply(const char* json) = 0;
    /// Ends an enrollment that is under way: "version", "enrollment_id"
    virtual QuillApiResult CancelEnrollment(const char* json) = 0;
    /// Ends an enrollment: "version", "enrollment_id", "enrollment_context"
    virtual QuillApiResult InitiateUnenrollment(const char* json) = 0;
    /// Asks for a synchronisation: "version", "enrollment_id"
    virtual QuillApiResult PerformConfigSync(const char* json) = 0;
    /// Asks for reports of the device's posture: "version"
    virtual QuillApiResult TriggerPostureReports(const char* json) = 0;
    /// Hands over the cookie of a login for a destination; an empty one where the browser failed: "version",
    /// "context_id", "authorization_cookie"
    virtual QuillApiResult DataplaneAuthReply(const char* json) = 0;
    /// Stops delivering. Must return while a callback is still waiting inside the plugin.
    virtual QuillApiResult Stop() = 0;

protected:
    /// Connections end with their last owner, which is the plugin as a rule. It lets go under its lock: the
    /// destructor must not deliver, nor wait for a callback that is under way.
    ~IQuillApi() = default;
};

/// Makes connections. Held weakly by its users: it lives as long as the library wants.
class IQuillApiFactory {
public:
    /// Keeps its place in the table; not called.
    virtual QuillApiResult Reserved() = 0;

    /// Makes a connection that is not started.
    /// @param api receives the new connection on success
    virtual QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) = 0;

protected:
    /// The factory is the library's.
    ~IQuillApiFactory() = default;
};

extern "C" {
/// Finds the factory. Called once for each plugin object.
/// @param factory receives the library's factory on success
WREN_BACKEND_API QuillApiResult WREN_CALL GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory);
}
