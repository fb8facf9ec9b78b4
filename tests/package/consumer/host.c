/* The least that a host in C does: the module's version, by the record of the SDK. */
#include "wren/PresentationPluginCbased.h"

#include <dlfcn.h>
#include <stdio.h>

typedef PresentationPluginCbasedMethods*(WREN_CALL* Create)(const char*);
typedef bool(WREN_CALL* Dispose)(PresentationPluginCbasedMethods*);

int main(void) {
    void* const module = dlopen(MODULE, RTLD_NOW | RTLD_LOCAL);
    if (module == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    Create create = NULL;
    Dispose dispose = NULL;
    *(void**)&create = dlsym(module, "CreateCbasedPlugin");
    *(void**)&dispose = dlsym(module, "DisposeCbasedPlugin");
    PresentationPluginCbasedMethods* const plugin = create(WREN_CBASED_PRESENTATION_INTERFACE);
    char version[32] = "";
    uint32_t size = sizeof version;
    if (plugin == NULL || plugin->size != sizeof *plugin ||
        plugin->GetDisplayVersion(plugin->handle, version, &size) != presentationDone || !dispose(plugin)) {
        fprintf(stderr, "the plugin refuses\n");
        return 1;
    }
    printf("C host: version %s\n", version);
    return 0;
}
