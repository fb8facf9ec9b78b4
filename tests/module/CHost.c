/* A host in plain C: loads the module, drives a plugin through its whole life by the record of functions, and
 * checks what it answers and shows. Takes the module's path and tells the first thing that is wrong. */
#include "backend-sim/WrenSim.h"
#include "tests/module/CHostLibrary.h"
#include "wren/PresentationPluginCbased.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define CHECK(condition)                                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            fprintf(stderr, "line %d: not so: %s\n", __LINE__, #condition);                                  \
            exit(EXIT_FAILURE);                                                                              \
        }                                                                                                    \
    } while (0)

enum { hostHandle = 77 };

static const char notEnrolled[] = "{\"version\":\"1\",\"state\":\"active\",\"interceptor_connectivity\":"
                                  "\"ok\",\"posture_connectivity\":\"ok\","
                                  "\"hw_key_store_availability\":\"ok\",\"service_status\":\"ok\","
                                  "\"enrollment_choices\":[],\"enrollments\":[]}";

/* What the host has heard. */
typedef struct Heard {
    unsigned notices;
    unsigned stops;
    bool hasWrongHandle;
    char latest[16 * 1024]; /* notice, cut */
} Heard;

static int32_t onNotify(uintptr_t context, uintptr_t handle, const char* xml) {
    Heard* heard = (Heard*)context;
    ++heard->notices;
    heard->hasWrongHandle = heard->hasWrongHandle || handle != hostHandle;
    snprintf(heard->latest, sizeof heard->latest, "%s", xml);
    return 0;
}

static int32_t onStopDone(uintptr_t context, uintptr_t handle) {
    Heard* heard = (Heard*)context;
    ++heard->stops;
    heard->hasWrongHandle = heard->hasWrongHandle || handle != hostHandle;
    return 0;
}

static int32_t onTranslate(uintptr_t context, uintptr_t first, uintptr_t second, uintptr_t third) {
    (void)context, (void)first, (void)second, (void)third;
    return presentationFailed;
}

typedef PresentationPluginCbasedMethods* (*Create)(const char*);
typedef bool (*Dispose)(PresentationPluginCbasedMethods*);
typedef PluginInterfaceList (*Interfaces)(void);

/* Stores the address of an exported function in the pointer to a function behind `function`. */
static void find(void* module, const char* name, void* function) {
    void* const symbol = findInModule(module, name);
    CHECK(symbol != NULL);
    memcpy(function, &symbol, sizeof symbol);
}

static bool offersRecords(Interfaces interfaces) {
    const PluginInterfaceList list = interfaces();
    for (int32_t i = 0; i < list.count; ++i) {
        if (strcmp(list.entries[i].name, WREN_CBASED_PRESENTATION_INTERFACE) == 0) {
            return list.entries[i].version == 3;
        }
    }
    return false;
}

typedef int32_t (*Getter)(void*, char*, uint32_t*);

static bool tells(void* handle, Getter getter, const char* expected) {
    char text[100] = "";
    uint32_t size = 0;
    if (getter(handle, NULL, &size) != presentationBufferTooSmall || size != strlen(expected) + 1) {
        return false;
    }
    return getter(handle, text, &size) == presentationDone && strcmp(text, expected) == 0;
}

static void checkWhatItTells(const PresentationPluginCbasedMethods* plugin) {
    void* const handle = plugin->handle;
    CHECK(plugin->size == sizeof *plugin);
    CHECK(plugin->SupportsInterface(handle, WREN_CBASED_PRESENTATION_INTERFACE, 3));
    CHECK(!plugin->SupportsInterface(handle, NULL, 3));
    CHECK(plugin->IsUIEnabled(handle));
    CHECK(plugin->IsMultiUserModeEnabled(handle));
    CHECK(tells(handle, plugin->GetIdentity, "com.norvane.vantor.presentation.quill"));
    CHECK(tells(handle, plugin->GetLabel, "Wren Gate"));
    CHECK(tells(handle, plugin->GetDisplayVersion, "5.1.11.2143"));
}

static void checkInertOperations(const PresentationPluginCbasedMethods* plugin) {
    char output[2] = "x";
    uint32_t size = sizeof output;
    CHECK(plugin->Encrypt(plugin->handle, 1, 2, 3, 4) == presentationEncryptUnavailable);
    CHECK(plugin->Decrypt(plugin->handle, 1, 2, output, &size) == presentationNotProvided);
    CHECK(output[0] == '\0' && size == 0);
    CHECK(plugin->GetPendingApprovalData(plugin->handle, 1, 2) == presentationNotProvided);
    CHECK(plugin->ApprovalEventNotification(plugin->handle, 1) == presentationNotProvided);
}

static void checkARun(const PresentationPluginCbasedMethods* plugin, Heard* heard) {
    void* const handle = plugin->handle;
    CHECK(plugin->Start(handle) == presentationDone);
    CHECK(heard->notices == 5);
    CHECK(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, notEnrolled) ==
          wrensim_delivered);
    CHECK(heard->notices > 5);
    const unsigned before = heard->notices;
    CHECK(plugin->EventNotification(handle, "<vtguiEvent id=\"quill_config_sync_btn_OnPress\"/>") ==
          presentationDone);
    CHECK(heard->notices > before);
    CHECK(plugin->EventNotification(handle, "no event") == presentationFailed);
    CHECK(plugin->Unregister(handle) == presentationFailed);
    CHECK(plugin->Stop(handle, 2) == presentationFailed);
    CHECK(heard->stops == 0);
    CHECK(plugin->Stop(handle, 1) == presentationDone);
    CHECK(heard->stops == 1);
}

int main(int argc, char** argv) {
    CHECK(argc == 2);
    void* const module = openModule(argv[1]);
    if (module == NULL) {
        return EXIT_FAILURE;
    }
    Interfaces interfaces;
    Create create;
    Dispose dispose;
    find(module, "GetAvailableInterfaces", &interfaces);
    find(module, "CreateCbasedPlugin", &create);
    find(module, "DisposeCbasedPlugin", &dispose);
    wrensim_set_quiet(true);

    CHECK(offersRecords(interfaces));
    CHECK(create(NULL) == NULL);
    CHECK(create(WREN_PRESENTATION_INTERFACE) == NULL);
    PresentationPluginCbasedMethods* plugin = create(WREN_CBASED_PRESENTATION_INTERFACE);
    CHECK(plugin != NULL);
    checkWhatItTells(plugin);

    static Heard heard;
    PresentationCbasedCallbacks callbacks = {(uintptr_t)&heard, onNotify, onStopDone};
    TranslatorCbasedCallbacks translator = {0, onTranslate, onTranslate};
    CHECK(plugin->Register(plugin->handle, NULL, hostHandle, &callbacks, &translator) ==
          presentationNullArgument);
    CHECK(plugin->Register(plugin->handle, "", hostHandle, &callbacks, &translator) == presentationDone);
    checkInertOperations(plugin);
    checkARun(plugin, &heard);
    CHECK(plugin->Unregister(plugin->handle) == presentationDone);
    CHECK(strstr(heard.latest, "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\"") != NULL);
    CHECK(!heard.hasWrongHandle);

    CHECK(dispose(plugin));
    CHECK(!dispose(plugin));
    CHECK(!dispose(NULL));
    wrensim_forget_receivers();
    closeModule(module);
    return EXIT_SUCCESS;
}
