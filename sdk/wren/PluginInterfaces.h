/** @file
 * What a module offers, in a form that C hosts and C++ hosts read alike. */
#ifndef WREN_PLUGIN_INTERFACES_H
#define WREN_PLUGIN_INTERFACES_H

#include "wren/Export.h"

#include <stdint.h>

/** Name of the C++ interface: `CreatePlugin` (wren/Plugin.h) takes this one and no other. */
#define WREN_PRESENTATION_INTERFACE "com.norvane.vantor.presentation"

/** Name of the C interface: `CreateCbasedPlugin` (wren/PresentationPluginCbased.h) takes this one and no
 * other. */
#define WREN_CBASED_PRESENTATION_INTERFACE "c_com.norvane.vantor.presentation"

#ifdef __cplusplus
extern "C" {
#endif

/** One interface that the module offers. */
typedef struct PluginInterfaceEntry {
    const char* name; /**< NUL-terminated, in static storage of the module */
    int32_t version;  /**< highest version that the module speaks */
} PluginInterfaceEntry;

/** The interfaces that a module offers. Refers to static storage of the module: nothing to free, valid until
 * the module is unloaded. */
typedef struct PluginInterfaceList {
    const PluginInterfaceEntry* entries; /**< `count` entries */
    int32_t count;                       /**< how many there are */
} PluginInterfaceList;

/** The interfaces of this module. Any thread, at any time, always the same answer. */
WREN_MODULE_API PluginInterfaceList WREN_CALL GetAvailableInterfaces(void);

#ifdef __cplusplus
}
#endif

#endif
