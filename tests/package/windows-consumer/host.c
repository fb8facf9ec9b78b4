/* The least that a host in C does, linked with the module: the module's version, by the record of the SDK. */
#include "wren/PresentationPluginCbased.h"

#include <stdio.h>

int main(void) {
    PresentationPluginCbasedMethods* const plugin = CreateCbasedPlugin(WREN_CBASED_PRESENTATION_INTERFACE);
    char version[32] = "";
    uint32_t size = sizeof version;
    if (plugin == NULL || plugin->size != sizeof *plugin ||
        plugin->GetDisplayVersion(plugin->handle, version, &size) != presentationDone ||
        !DisposeCbasedPlugin(plugin)) {
        fprintf(stderr, "the plugin refuses\n");
        return 1;
    }
    printf("C host: version %s\n", version);
    return 0;
}
