#include "tests/windows/msvc/Host.h"

namespace foreign {

int Thrown::alive = 0;

const char* const notEnrolled =
    R"({"version":"1","state":"active","interceptor_connectivity":"ok","posture_connectivity":"ok","hw)"
    R"(_key_store_availability":"ok","service_status":"ok","enrollment_choices":[{"state":"available",)"
    R"("id":"choice-1","type":"user","label":"Example Corp","enroll_allowed":true}],"enrollments":[]})";
const char* const enrollmentStarted =
    R"({"version":"1","status":"started","substatus":"","enrollment_id":"enr-1"})";
const char* const enrollmentLogin =
    R"({"version":"1","enrollment_id":"enr-1","start_url":"https://login.example.test/start?a=1&b=2",")"
    R"(end_url":"https://login.example.test/done","cookie_name":"session"})";
const char* const enrolled =
    R"({"version":"1","state":"active","interceptor_connectivity":"ok","posture_connectivity":"ok","hw)"
    R"(_key_store_availability":"ok","service_status":"ok","enrollment_choices":[],"enrollments":[{"st)"
    R"(ate":"enrolled","substate":"","id":"enr-1","type":"user","label":"Example Corp","enrollment_tim)"
    R"(e":1767607200,"unenroll_allowed":true,"reenroll_allowed":true,"config_sync_status":{"config_syn)"
    R"(c_interval_min":30,"last_config_sync_success":1767610800,"fail_cnt_since_last_sync_success":0,")"
    R"(server_connectivity":"ok"},"certificate_status":{"certificate_expiration_time":1799143200,"last)"
    R"(_renewal_attempt_time":0,"failed_renewal_attempt_cnt":0,"certificate_state":"ok","certificate_r)"
    R"(enewal_status":"ok","certificate_urns":{"org_id":"org-7","user_id":"u-42","plv_id":"p-1","quill)"
    R"(_device_id":"dev-9","user_name":"sam@example.test"}},"dataplane_status":{"flow_cnt_udp":0,"flow)"
    R"(_cnt_tcp":1,"active_flow_cnt_udp":2,"active_flow_cnt_tcp":3,"allowed_flow_cnt_udp":4,"allowed_f)"
    R"(low_cnt_tcp":5,"blocked_flow_cnt_udp":6,"blocked_flow_cnt_tcp":7,"authenticated_flow_cnt_udp":8)"
    R"(,"authenticated_flow_cnt_tcp":9,"server_connectivity":"ok","proxy_configs":[{"label":"proxy wes)"
    R"(t","status":"active"},{"label":"proxy <east>","status":"inactive_tnd"}]},"network_status":{"fin)"
    R"(gerprints":[{"label":"office","status":"Matched"}]}}]})";
const char* const enrollmentComplete =
    R"({"version":"1","status":"complete","substatus":"success","enrollment_id":"enr-1"})";

namespace {

template <class Function>
void find(Handle library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(GetProcAddress(library, name));
    CHECK(function != nullptr);
}

} // namespace

Libraries::Libraries(const char* moduleFile, const char* service) {
    if (service != nullptr) {
        const Handle library = LoadLibraryA(service);
        CHECK(library != nullptr);
        find(library, "serviceSetFault", setFault);
        find(library, "serviceDeliver", deliver);
        find(library, "serviceTakeRequest", takeRequest);
        find(library, "serviceCounts", counts);
        find(library, "serviceDeliverAlways", deliverAlways);
    }
    module = LoadLibraryA(moduleFile);
    CHECK(module != nullptr);
    find(module, "GetAvailableInterfaces", getInterfaces);
    find(module, "CreatePlugin", createPlugin);
    find(module, "DisposePlugin", disposePlugin);
    find(module, "CreateCbasedPlugin", createRecord);
    find(module, "DisposeCbasedPlugin", disposeRecord);
}

Callbacks::Callbacks()
    : text(static_cast<char*>(malloc(mostText))) {
    text[0] = '\0';
}

void Callbacks::throwIfAsked() {
    const Thrown local; // its end shows that the frames between are cleaned up
    switch (throws) {
    case Throws::Nothing:
        break;
    case Throws::Object:
        throw Thrown();
    case Throws::Number:
        throw 42;
    case Throws::StructuredException:
        RaiseException(0xE0000001, 0, 0, nullptr);
        break;
    }
}

int32_t Callbacks::Notify(uintptr_t handle, const char* xml) {
    CHECK(this == self);
    CHECK(handle == hostHandle);
    ++notices;
    thread = GetCurrentThreadId();
    const size_t size = strlen(xml);
    if (length + size < mostText) {
        memcpy(text + length, xml, size + 1);
        length += size;
    }
    throwIfAsked();
    return 77; // is ignored
}

int32_t Callbacks::StopDone(uintptr_t handle) {
    CHECK(this == self);
    CHECK(handle == hostHandle);
    ++stops;
    throwIfAsked();
    return -77;
}

bool Callbacks::hasShown(const char* words) {
    const bool isThere = strstr(text, words) != nullptr;
    length = 0;
    text[0] = '\0';
    return isThere;
}

namespace {

// The record's callbacks: the context is the object that notes.

int32_t __cdecl notify(uintptr_t context, uintptr_t handle, const char* xml) {
    return reinterpret_cast<Callbacks*>(context)->Notify(handle, xml);
}

int32_t __cdecl stopDone(uintptr_t context, uintptr_t handle) {
    return reinterpret_cast<Callbacks*>(context)->StopDone(handle);
}

int32_t __cdecl translate(uintptr_t, uintptr_t, uintptr_t, uintptr_t) { return 0; }

} // namespace

PresentationCbasedCallbacks recordOf(Callbacks& noting) {
    return {reinterpret_cast<uintptr_t>(&noting), &notify, &stopDone};
}

TranslatorCbasedCallbacks translatorRecord() { return {0, &translate, &translate}; }

} // namespace foreign
