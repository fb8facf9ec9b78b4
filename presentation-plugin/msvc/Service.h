/// The interfaces of wren/QuillApi.h as a service library has them that Microsoft's compiler built: the same
/// slots in the same order, but other pointers in their arguments, and one slot for a destructor.
#pragma once

#include "presentation-plugin/msvc/Pointers.h"
#include "wren/QuillApi.h"

namespace msvc {

class Callbacks {
public:
    virtual void StatusNotification(const char* json) = 0;
    virtual void EnrollmentStatusNotification(const char* json) = 0;
    virtual void EnrollmentAuthRequest(const char* json) = 0;
    virtual void UnenrollmentStatusNotification(const char* json) = 0;
    virtual void DataplaneNotification(const char* json) = 0;
    virtual void* deletingDestructor(unsigned flags) = 0;

protected:
    ~Callbacks() = default;
};

class Api {
public:
    virtual QuillApiResult Start(WeakPointer<Callbacks> callbacks) = 0;
    virtual QuillApiResult InitiateEnrollment(const char* json) = 0;
    virtual QuillApiResult InitiateReEnrollment(const char* json) = 0;
    virtual QuillApiResult EnrollmentAuthReply(const char* json) = 0;
    virtual QuillApiResult CancelEnrollment(const char* json) = 0;
    virtual QuillApiResult InitiateUnenrollment(const char* json) = 0;
    virtual QuillApiResult PerformConfigSync(const char* json) = 0;
    virtual QuillApiResult TriggerPostureReports(const char* json) = 0;
    virtual QuillApiResult DataplaneAuthReply(const char* json) = 0;
    virtual QuillApiResult Stop() = 0;

protected:
    ~Api() = default;
};

class ApiFactory {
public:
    virtual QuillApiResult Reserved() = 0;
    virtual QuillApiResult CreateApi(SharedPointer<Api>& api) = 0;

protected:
    ~ApiFactory() = default;
};

/// What the library exports.
struct Exports {
    QuillApiResult(__cdecl* getFactory)(WeakPointer<ApiFactory>& factory);
    void*(__thiscall* constructCallbacks)(void* callbacks);
    void(__thiscall* destructCallbacks)(void* callbacks);
};

} // namespace msvc
