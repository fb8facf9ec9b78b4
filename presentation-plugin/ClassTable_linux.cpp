#include "presentation-plugin/ClassTable.h"
#include "presentation-plugin/PresentationPluginImpl.h"

Plugin* asPlugin(PresentationPluginImpl* plugin) { return plugin; }

void destroyPlugin(Plugin* plugin) { delete plugin; }
