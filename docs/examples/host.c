/* The smallest host in C: loads the module that it is given, runs a plugin, prints the first notices, and
 * ends it. */
#include <wren/PresentationPluginCbased.h>

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

/* Stores the address of an exported function in the pointer to a function behind `function`. */
static bool find(void* module, const char* name, void* function) {
    void* const symbol = dlsym(module, name);
    memcpy(function, &symbol, sizeof symbol);
    return symbol != NULL;
}

/* Arrives on threads of the host and of the service: a real host hands the text to its window's thread. */
static int32_t onNotify(uintptr_t context, uintptr_t hostHandle, const char* xml) {
    (void)context, (void)hostHandle;
    return puts(xml);
}

static int32_t onStopDone(uintptr_t context, uintptr_t hostHandle) {
    (void)context, (void)hostHandle;
    return puts("stopped");
}

static int runPlugin(PresentationPluginCbasedMethods* plugin) {
    /* Must stay where it is until the record is unregistered or disposed of. */
    static PresentationCbasedCallbacks callbacks = {0, onNotify, onStopDone};
    void* const handle = plugin->handle;
    if (!plugin->SupportsInterface(handle, WREN_CBASED_PRESENTATION_INTERFACE, 3) ||
        plugin->Register(handle, "", 1, &callbacks, NULL) != presentationDone) {
        return 1;
    }
    const int32_t started = plugin->Start(handle);
    if (started == presentationDone) {
        plugin->EventNotification(handle, "<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>");
        plugin->Stop(handle, 0);
    }
    plugin->Unregister(handle);
    return started == presentationDone ? 0 : 1;
}

int main(int argc, char** argv) {
    PresentationPluginCbasedMethods* (*create)(const char*);
    bool (*dispose)(PresentationPluginCbasedMethods*);
    void* const module = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (module == NULL || !find(module, "CreateCbasedPlugin", &create) ||
        !find(module, "DisposeCbasedPlugin", &dispose)) {
        fputs("usage: host MODULE\n", stderr);
        return 2;
    }
    PresentationPluginCbasedMethods* const plugin = create(WREN_CBASED_PRESENTATION_INTERFACE);
    const int result = plugin != NULL ? runPlugin(plugin) : 1;
    dispose(plugin);
    return result;
}
