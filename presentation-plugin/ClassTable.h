/// The plugin object as hosts of the platform's own compiler see it: where it becomes a `Plugin*`, and where
/// that ends. On Windows this is the table and the type information of Microsoft's compiler.
#pragma once

class Plugin;
class PresentationPluginImpl;

/// Makes the object usable through the class. Call it once, right after construction.
/// @param plugin owned by the caller, who passes it on to `destroyPlugin`
Plugin* asPlugin(PresentationPluginImpl* plugin);

/// Destroys an object through its table and frees its memory.
/// @param plugin from `asPlugin`, or null
void destroyPlugin(Plugin* plugin);
