/* A host in C that needs nothing but the module: it can be built for Visual C++'s rules without its
 * libraries. It ends with 0 where the module gives its version. */
#include "wren/PresentationPluginCbased.h"

static int isDone(void) {
    PresentationPluginCbasedMethods* const plugin = CreateCbasedPlugin(WREN_CBASED_PRESENTATION_INTERFACE);
    char version[32];
    uint32_t size = sizeof version;
    return plugin != 0 && plugin->size == sizeof *plugin &&
           plugin->GetDisplayVersion(plugin->handle, version, &size) == presentationDone &&
           version[0] == '5' && DisposeCbasedPlugin(plugin);
}

int start(void) { return isDone() ? 0 : 1; }
