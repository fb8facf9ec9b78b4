// Callbacks that throw: the plugin's lock is released, and it works on.
#include "tests/windows/msvc/Host.h"

namespace foreign {
namespace {

constexpr const char* interfaceName = "com.norvane.vantor.presentation";
constexpr const char* enrollEvent = "<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>";
constexpr const char* cancelEvent = "<vtguiEvent id=\"quill_tile_cancel_action_btn_OnPress\"/>";

unsigned long __stdcall enroll(void* plugin) {
    static_cast<IPresentationPluginV3*>(plugin)->EventNotification(enrollEvent);
    return 0;
}

/// Another thread gets the plugin's lock in no more than ten seconds.
bool isFree(IPresentationPluginV3* plugin) {
    const Handle thread = CreateThread(nullptr, 0, &enroll, plugin, 0, nullptr);
    const bool isDone = WaitForSingleObject(thread, 10'000) == 0;
    CloseHandle(thread);
    return isDone;
}

/// Runs a call into the plugin.
/// @return whether it came back with an exception
template <class Call>
bool throws(Call call) {
    try {
        call();
    } catch (...) {
        return true;
    }
    return false;
}

void checkThrowing(const Libraries& libraries, Callbacks& callbacks, IPresentationPluginV3* plugin) {
    const unsigned before = callbacks.notices;
    CHECK(!throws([&] { CHECK(plugin->EventNotification(enrollEvent) == 0); }));
    CHECK(callbacks.notices > before + 1); // the notices after the first come, too
    CHECK(Thrown::alive == 0);
    CHECK(isFree(plugin));
    CHECK(libraries.deliver(statusDocument, enrolled));
    CHECK(!throws([&] { plugin->EventNotification(cancelEvent); }));
    CHECK(
        libraries.deliver(enrollmentDocument, R"({"version":"1","status":"failed","substatus":"canceled"})"));
    CHECK(Thrown::alive == 0);
    CHECK(isFree(plugin));
}

/// `__try` stands in a function without objects.
int callWithHandler(IPresentationPluginV3* plugin) {
    __try {
        plugin->EventNotification(enrollEvent);
        return 0;
    } __except (1) {
        return 1;
    }
}

} // namespace

void checkExceptions(const Libraries& libraries) {
    constexpr Throws kinds[] = {Throws::Object, Throws::Number};
    for (const Throws thrown : kinds) {
        Callbacks callbacks;
        callbacks.throws = thrown;
        auto* const plugin = static_cast<IPresentationPluginV3*>(libraries.createPlugin(interfaceName));
        CHECK(plugin->Register("", hostHandle, &callbacks, &callbacks) == 0);
        CHECK(!throws([&] { CHECK(plugin->Start() == 0); }));
        CHECK(callbacks.notices == 5);
        CHECK(libraries.deliver(statusDocument, notEnrolled));
        checkThrowing(libraries, callbacks, plugin);
        CHECK(!throws([&] { CHECK(plugin->Stop(0) == 0); }) && callbacks.stops == 1);
        callbacks.throws = Throws::Nothing;
        callbacks.hasShown("");
        CHECK(plugin->Start() == 0 && libraries.deliver(statusDocument, notEnrolled));
        CHECK(libraries.deliver(statusDocument, enrolled));
        CHECK(callbacks.hasShown("Wren Gate is active."));
        callbacks.throws = thrown;
        CHECK(!throws([&] { CHECK(libraries.disposePlugin(plugin)); }) && callbacks.stops == 2);
        CHECK(Thrown::alive == 0);
    }
    Callbacks callbacks;
    auto* const plugin = static_cast<IPresentationPluginV3*>(libraries.createPlugin(interfaceName));
    CHECK(plugin->Register("", hostHandle, &callbacks, &callbacks) == 0 && plugin->Start() == 0);
    CHECK(libraries.deliver(statusDocument, notEnrolled));
    callbacks.throws = Throws::StructuredException; // a handler of the host's above the plugin takes it
    CHECK(callWithHandler(plugin) == 0);
    Thrown::alive = 0; // such an exception runs no destructors
    callbacks.throws = Throws::Nothing;
    CHECK(isFree(plugin));
    CHECK(libraries.disposePlugin(plugin));
}

void checkServiceExceptions(const Libraries& libraries) {
    Callbacks callbacks;
    auto* const plugin = static_cast<IPresentationPluginV3*>(libraries.createPlugin(interfaceName));
    CHECK(plugin->Register("", hostHandle, &callbacks, &callbacks) == 0 && plugin->Start() == 0);
    CHECK(libraries.deliver(statusDocument, enrolled));
    libraries.setFault(serviceRequestThrows);
    CHECK(!throws([&] { plugin->EventNotification("<vtguiEvent id=\"quill_config_sync_btn_OnPress\"/>"); }));
    libraries.setFault(serviceWorks);
    CHECK(isFree(plugin));
    CHECK(plugin->Stop(0) == 0);
    CHECK(libraries.disposePlugin(plugin));
}

void checkRecordExceptions(const Libraries& libraries) {
    PresentationPluginCbasedMethods* const record =
        libraries.createRecord("c_com.norvane.vantor.presentation");
    CHECK(record != nullptr);
    void* const handle = record->handle;
    Callbacks noted;
    PresentationCbasedCallbacks callbacks = recordOf(noted);
    TranslatorCbasedCallbacks translator = translatorRecord();
    CHECK(record->Register(handle, "", hostHandle, &callbacks, &translator) == 0);
    noted.throws = Throws::Object;
    CHECK(!throws([&] { CHECK(record->Start(handle) == 0); }) && noted.notices == 5);
    CHECK(libraries.deliver(statusDocument, notEnrolled));
    CHECK(!throws([&] { CHECK(record->EventNotification(handle, enrollEvent) == 0); }));
    CHECK(libraries.deliver(statusDocument, enrolled)); // from another thread: the lock is free
    CHECK(!throws([&] { CHECK(record->Stop(handle, 0) == 0); }) && noted.stops == 1);
    CHECK(Thrown::alive == 0);
    CHECK(libraries.disposeRecord(record));
}

} // namespace foreign
