// A plugin's life with a service of the same compiler: by the class, by the record, and when the service
// fails.
#include "tests/windows/msvc/Host.h"

namespace foreign {
namespace {

constexpr const char* interfaceName = "com.norvane.vantor.presentation";
constexpr const char* recordName = "c_com.norvane.vantor.presentation";

IPresentationPluginV3* make(const Libraries& libraries, Callbacks& callbacks) {
    auto* const plugin = static_cast<IPresentationPluginV3*>(libraries.createPlugin(interfaceName));
    CHECK(plugin != nullptr);
    CHECK(plugin->Register("", hostHandle, &callbacks, &callbacks) == 0);
    return plugin;
}

bool requested(const Libraries& libraries, const char* words) {
    return strcmp(libraries.takeRequest(), words) == 0;
}

} // namespace

void checkLife(const Libraries& libraries) {
    Callbacks callbacks;
    const ServiceCounts before = libraries.counts();
    IPresentationPluginV3* const plugin = make(libraries, callbacks);
    CHECK(libraries.counts().receiversMade == before.receiversMade + 1);
    CHECK(BALANCED(plugin->Start()) == 0);
    CHECK(callbacks.notices == 5 && callbacks.hasShown("Initializing. Please wait..."));
    CHECK(libraries.counts().connections == before.connections + 1);

    CHECK(libraries.deliver(statusDocument, notEnrolled));
    CHECK(callbacks.thread != GetCurrentThreadId());
    CHECK(callbacks.hasShown("Registration is required to access secure resources."));
    CHECK(BALANCED(plugin->EventNotification("<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>")) ==
          0);
    CHECK(callbacks.thread == GetCurrentThreadId() && callbacks.hasShown("Enrolling..."));
    CHECK(requested(libraries, R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                               R"("enrollment_context":""})"));
    CHECK(libraries.deliver(enrollmentDocument, enrollmentStarted));
    CHECK(libraries.deliver(loginDocument, enrollmentLogin));
    CHECK(callbacks.hasShown("https://login.example.test/start?a=1&amp;b=2"));
    CHECK(plugin->EventNotification(
              "<vtguiEvent id=\"quill_enrollment_browser_web_control_OnPress\">"
              "<webbrowser id=\"quill_enrollment_browser_web_control\" value=\"c00kie\"/></vtguiEvent>") ==
          0);
    CHECK(requested(libraries, R"(EnrollmentAuthReply {"version":"1","enrollment_id":"enr-1",)"
                               R"("enrollment_cookie":"c00kie"})"));
    CHECK(libraries.deliver(statusDocument, enrolled));
    CHECK(libraries.deliver(enrollmentDocument, enrollmentComplete));
    CHECK(callbacks.hasShown("Wren Gate is active."));

    // The receiver lives as long as the plugin: a document after the stop still reaches it.
    CHECK(BALANCED(plugin->Stop(0)) == 0 && callbacks.stops == 1);
    CHECK(libraries.counts().connections == before.connections);
    CHECK(libraries.counts().receiverUses == 1 && libraries.deliver(statusDocument, notEnrolled));
    CHECK(plugin->Start() == 0 && libraries.deliver(statusDocument, notEnrolled));
    CHECK(plugin->Stop(1) == 0 && plugin->Unregister() == 0);
    CHECK(BALANCED(libraries.disposePlugin(plugin)));
    CHECK(libraries.counts().receiverUses == 0 && !libraries.deliver(statusDocument, notEnrolled));
    CHECK(libraries.counts().receiversEnded == before.receiversEnded + 1);
}

void checkManyPlugins(const Libraries& libraries) {
    Callbacks callbacks;
    CHECK(libraries.disposePlugin(make(libraries, callbacks)));
    const ServiceCounts before = libraries.counts();
    for (int number = 0; number < 100; ++number) {
        IPresentationPluginV3* const plugin = make(libraries, callbacks);
        CHECK(plugin->Start() == 0);
        CHECK(libraries.disposePlugin(plugin));
    }
    const ServiceCounts after = libraries.counts();
    CHECK(after.factoryObservers == before.factoryObservers && after.connections == before.connections);
    CHECK(after.receiversEnded == before.receiversEnded + 100 && after.receiversMade == after.receiversEnded);
}

void checkServiceFaults(const Libraries& libraries) {
    libraries.setFault(serviceFactoryFails);
    CHECK(libraries.createPlugin(interfaceName) == nullptr);
    libraries.setFault(serviceWorks);
    Callbacks callbacks;
    const int connections = libraries.counts().connections;
    IPresentationPluginV3* const plugin = make(libraries, callbacks);
    constexpr uint32_t faults[] = {serviceNullApi, serviceApiFails, serviceStartFails, serviceStartThrows};
    for (const uint32_t fault : faults) {
        libraries.setFault(fault);
        CHECK(plugin->Start() == -10);
        CHECK(callbacks.hasShown("Kestrel Suite error. Contact your IT help desk."));
        CHECK(libraries.counts().connections == connections);
    }
    libraries.setFault(serviceWorks);
    CHECK(plugin->Start() == 0 && plugin->Stop(0) == 0);
    libraries.setFault(serviceFactoryGone);
    CHECK(libraries.counts().isFactoryGone);
    CHECK(plugin->Start() == -10);
    libraries.setFault(serviceWorks);
    CHECK(libraries.disposePlugin(plugin));
    IPresentationPluginV3* const next = make(libraries, callbacks); // with another factory
    CHECK(next->Start() == 0);
    CHECK(libraries.disposePlugin(next));
}

void checkRecord(const Libraries& libraries) {
    CHECK(libraries.createRecord(interfaceName) == nullptr);
    PresentationPluginCbasedMethods* const record = BALANCED(libraries.createRecord(recordName));
    CHECK(record != nullptr && record->size == 68);
    void* const handle = record->handle;
    Callbacks noted;
    PresentationCbasedCallbacks callbacks = recordOf(noted);
    TranslatorCbasedCallbacks translator = translatorRecord();
    CHECK(BALANCED(record->SupportsInterface(handle, recordName, 3)));
    CHECK(BALANCED(record->Register(handle, nullptr, hostHandle, &callbacks, &translator)) == -4);
    CHECK(BALANCED(record->Register(handle, "", hostHandle, &callbacks, &translator)) == 0);
    CHECK(BALANCED(record->Start(handle)) == 0 && noted.notices == 5);
    CHECK(BALANCED(record->IsUIEnabled(handle)) && BALANCED(record->IsMultiUserModeEnabled(handle)));
    char text[64] = "";
    uint32_t size = sizeof text;
    CHECK(BALANCED(record->GetIdentity(handle, text, &size)) == 0);
    CHECK(strcmp(text, "com.norvane.vantor.presentation.quill") == 0);
    CHECK(BALANCED(record->GetLabel(handle, text, &size)) == 0 && strcmp(text, "Wren Gate") == 0);
    CHECK(BALANCED(record->GetDisplayVersion(handle, text, &size)) == 0 && strcmp(text, "5.1.11.2143") == 0);
    CHECK(BALANCED(record->Encrypt(handle, 1, 2, 3, 4)) == -1);
    CHECK(BALANCED(record->Decrypt(handle, 1, 2, text, &size)) == -2);
    CHECK(BALANCED(record->GetPendingApprovalData(handle, 1, 2)) == -2);
    CHECK(BALANCED(record->ApprovalEventNotification(handle, 1)) == -2);
    CHECK(libraries.deliver(statusDocument, enrolled) && noted.hasShown("Wren Gate is active."));
    CHECK(BALANCED(record->EventNotification(handle, "<vtguiEvent id=\"quill_config_sync_btn_OnPress\"/>")) ==
          0);
    CHECK(requested(libraries, R"(PerformConfigSync {"version":"1","enrollment_id":"enr-1"})"));
    CHECK(BALANCED(record->Stop(handle, 2)) == -10);
    CHECK(BALANCED(record->Stop(handle, 1)) == 0 && noted.stops == 1);
    CHECK(BALANCED(record->Unregister(handle)) == 0);
    CHECK(BALANCED(libraries.disposeRecord(record)));
    CHECK(!BALANCED(libraries.disposeRecord(record)));
}

namespace {

/// By asking for each: Wine doesn't count them.
unsigned openHandles() {
    unsigned count = 0;
    for (size_t value = 4; value < 0x4000; value += 4) {
        unsigned long flags = 0;
        count += GetHandleInformation(reinterpret_cast<Handle>(value), &flags) != 0 ? 1U : 0U;
    }
    return count;
}

} // namespace

void checkManyLives(const char* moduleFile, const char* service, int lives) {
    unsigned before = 0;
    for (int life = 0; life < lives; ++life) {
        const Libraries libraries(moduleFile, service);
        Callbacks* const callbacks = new Callbacks;
        IPresentationPluginV3* const plugin = make(libraries, *callbacks);
        CHECK(plugin->Start() == 0);
        CHECK(libraries.deliver(statusDocument, notEnrolled));
        CHECK(plugin->Stop(0) == 0);
        CHECK(libraries.disposePlugin(plugin));
        delete callbacks;
        CHECK(FreeLibrary(libraries.module));
        if (life == lives / 10) {
            before = openHandles();
        }
    }
    const unsigned after = openHandles();
    printf("%d lives: %u handles, then %u\n", lives, before, after);
    CHECK(before > 0 && after <= before);
}

// The service keeps its weak pointer until the next start: it lets go of it when the module has gone.
void checkUnloading(const char* moduleFile, const char* service, int lives) {
    constexpr int threads = 4;
    constexpr unsigned noticesOfALife = 5 + 8; // of the start, and of some documents
    for (int life = 0; life < lives; ++life) {
        const Libraries libraries(moduleFile, service);
        libraries.deliverAlways(threads, notEnrolled);
        Callbacks callbacks;
        IPresentationPluginV3* const plugin = make(libraries, callbacks);
        CHECK(plugin->Start() == 0);
        while (*static_cast<unsigned volatile*>(&callbacks.notices) < noticesOfALife) {
            Sleep(0);
        }
        CHECK(libraries.disposePlugin(plugin));
        CHECK(FreeLibrary(libraries.module));
        CHECK(GetModuleHandleA("kes_wren_presentation_plugin.dll") == nullptr);
    }
    const Libraries libraries(moduleFile, service);
    libraries.deliverAlways(0, nullptr);
    CHECK(FreeLibrary(libraries.module));
    printf("%d unloadings under %d threads\n", lives, threads);
}

} // namespace foreign
