/** @file
 * A presentation plugin for hosts that are not written in C++: a record of functions instead of a class, and
 * records of functions instead of the host's interfaces. Behind them works the same plugin object.
 *
 * A host loads the module, makes a record with `CreateCbasedPlugin`, asks its `SupportsInterface` for version
 * 3 of `WREN_CBASED_PRESENTATION_INTERFACE`, drives the plugin through the record's functions, and gives the
 * record back to `DisposeCbasedPlugin`.
 *
 * Conventions:
 *  1. Layout. Every field of every record has the size of a pointer and the fields follow one another without
 *     gaps: the plugin's record has 68 bytes where pointers have 32 bits, 136 where they have 64. The order
 * of the fields is fixed. Where a parameter is called a word, it has the size of a pointer, and the plugin
 *     does not look into it.
 *  2. Calls. All functions, on both sides, have the platform's C calling convention; on 32-bit Windows that
 *     is cdecl, the compilers' default (/Gd), and this header must be compiled with that default.
 *  3. Handle. The first argument of every function of the plugin's record is its `handle`. A null handle is
 *     logged and refused: with `presentationFailed`, or with false where the function answers a bool.
 *  4. Ownership. The plugin's record belongs to the module and is only read by the host; it is valid from
 *     `CreateCbasedPlugin` to `DisposeCbasedPlugin`. The host's records belong to the host: the module keeps
 *     the pointers from `Register` on, so they must stay valid until `Unregister` has
 *     succeeded, or until the plugin's record is disposed of. Either side frees only what is its own. A copy
 *     of a record does not prolong anything.
 *  5. Texts. All are NUL-terminated UTF-8. A text that is passed is read during the call and not kept.
 *  6. Null. A null record of callbacks is allowed and means that nobody listens; a null translator record
 *     likewise. The functions inside a record must not be null. Of the texts, `arguments` of `Register` must
 *     not be null (`presentationNullArgument`), nor `xml` of `EventNotification` (`presentationFailed`).
 *  7. Results. An `int32_t` is a `PresentationPluginResult`, save where a callback's result is said to be
 *     ignored. What is refused or fails is told by the result and by the module's log, never otherwise: no
 *     exception leaves a function of the module, and none may leave a function of the host.
 *  8. Threads. Every function may be called from any thread, and the plugin serialises what must be
 *     serialised, with two exceptions: `Register` and `Unregister` must not run while another of the host's
 *     calls on the same record is under way, and nothing may be under way on a record, nor come after, when
 *     it is disposed of.
 *  9. Callbacks. They arrive on the host's own threads, from within its calls, and on threads of the
 *     backend library. From inside them the host must not call `Register`, `Start`, `Stop`, `Unregister`,
 *     `EventNotification` or `DisposeCbasedPlugin` for the same plugin on the same thread: it hands such work
 *     to another thread.
 */
#ifndef WREN_PRESENTATION_PLUGIN_CBASED_H
#define WREN_PRESENTATION_PLUGIN_CBASED_H

#include "wren/Export.h"
#include "wren/PluginInterfaces.h"
#include "wren/PresentationPluginResult.h"

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What the host supplies to hear of the plugin. */
typedef struct PresentationCbasedCallbacks {
    /** A word of the host's own, passed first to both functions. */
    uintptr_t context;
    /** Shows one notice.
     * @param hostHandle the word given to `Register`
     * @param xml a "vtguiNotice" document, valid during the call only
     * @return ignored */
    int32_t(WREN_CALL* Notify)(uintptr_t context, uintptr_t hostHandle, const char* xml);
    /** Tells that a running plugin has stopped. Arrives on the thread that called `Stop`, or that disposes of
     * the record, before that call returns.
     * @return ignored */
    int32_t(WREN_CALL* StopDone)(uintptr_t context, uintptr_t hostHandle);
} PresentationCbasedCallbacks;

/** What the host supplies to translate texts. This plugin never calls it. */
typedef struct TranslatorCbasedCallbacks {
    /** A word of the host's own, passed first to both functions. */
    uintptr_t context;
    /** The first translation, of three words.
     * @return `presentationFailed` stands for a host that supplied no record */
    int32_t(WREN_CALL* TranslatorOperation1)(uintptr_t context, uintptr_t first, uintptr_t second,
                                             uintptr_t third);
    /** The second translation, likewise. */
    int32_t(WREN_CALL* TranslatorOperation2)(uintptr_t context, uintptr_t first, uintptr_t second,
                                             uintptr_t third);
} TranslatorCbasedCallbacks;

/** A plugin. */
typedef struct PresentationPluginCbasedMethods {
    /** Size of this record in bytes. */
    uintptr_t size;
    /** The plugin, to be passed first to every function. */
    void* handle;
    /** Whether the plugin can be used as the named interface in that version; a null name is allowed. */
    bool(WREN_CALL* SupportsInterface)(void* handle, const char* name, int version);
    /** Gives the plugin the host's records. First call after creation. The records of the latest call count,
     * also where that call is refused: who registers twice must keep the second records alive as well.
     * @param arguments must not be null; not read
     * @param hostHandle word passed back with every callback
     * @param callbacks null to hear nothing
     * @param translator may be null
     * @return `presentationDone`, `presentationNullArgument` or `presentationFailed` */
    int32_t(WREN_CALL* Register)(void* handle, const char* arguments, uintptr_t hostHandle,
                                 PresentationCbasedCallbacks* callbacks,
                                 TranslatorCbasedCallbacks* translator);
    /** Draws the first screen and starts the backend. On failure the plugin stays registered, with the error
     * on screen, and `Start` may be called again.
     * @return `presentationDone` or `presentationFailed` */
    int32_t(WREN_CALL* Start)(void* handle);
    /** Stops the backend and calls `StopDone`, also where the backend reports a failure.
     * @param reason 0 or 1, treated alike; anything else is refused and the plugin keeps running
     * @return `presentationDone` or `presentationFailed` */
    int32_t(WREN_CALL* Stop)(void* handle, uint32_t reason);
    /** Forgets the host's records. Only while stopped; otherwise they stay in use.
     * @return `presentationDone` or `presentationFailed` */
    int32_t(WREN_CALL* Unregister)(void* handle);
    /** Whether the plugin shows anything: true. */
    bool(WREN_CALL* IsUIEnabled)(void* handle);
    /** Copies the plugin's identity. All three getters work alike: the text with its NUL needs n bytes. With
     * a buffer and `*size >= n` the text is copied and `presentationDone` returned, `*size` unchanged.
     * Otherwise `*size` becomes n and `presentationBufferTooSmall` is returned, so that a null buffer asks
     * for the size. A null `size` gives `presentationFailed`. */
    int32_t(WREN_CALL* GetIdentity)(void* handle, char* buffer, uint32_t* size);
    /** Copies the name that users know the plugin by, likewise. */
    int32_t(WREN_CALL* GetLabel)(void* handle, char* buffer, uint32_t* size);
    /** Copies the version that users are shown, likewise. */
    int32_t(WREN_CALL* GetDisplayVersion)(void* handle, char* buffer, uint32_t* size);
    /** Not offered: touches no argument and returns `presentationEncryptUnavailable`. */
    int32_t(WREN_CALL* Encrypt)(void* handle, uintptr_t first, uintptr_t second, uintptr_t third,
                                uintptr_t fourth);
    /** Not offered: writes an empty text to `output` and 0 to `outputSize`, each where it is not null, and
     * returns `presentationNotProvided`. */
    int32_t(WREN_CALL* Decrypt)(void* handle, uintptr_t first, uintptr_t second, char* output,
                                uint32_t* outputSize);
    /** Reports what the user did.
     * @param xml a "vtguiEvent" document
     * @return `presentationDone`, also for a click that is refused; `presentationFailed` for a document that
     *         is no event and for a control that the plugin does not know */
    int32_t(WREN_CALL* EventNotification)(void* handle, const char* xml);
    /** Whether several users may be logged in: true. */
    bool(WREN_CALL* IsMultiUserModeEnabled)(void* handle);
    /** Not offered: returns `presentationNotProvided`. */
    int32_t(WREN_CALL* GetPendingApprovalData)(void* handle, uintptr_t first, uintptr_t second);
    /** Not offered: returns `presentationNotProvided`. */
    int32_t(WREN_CALL* ApprovalEventNotification)(void* handle, uintptr_t first);
} PresentationPluginCbasedMethods;

/** Makes a plugin. Each is independent of the others; a host may hold several. Any thread.
 * @param interfaceName `WREN_CBASED_PRESENTATION_INTERFACE`; anything else, null included, is refused
 * @return the plugin's record, valid until `DisposeCbasedPlugin`; null on failure, which the log explains
 */
WREN_MODULE_API PresentationPluginCbasedMethods* WREN_CALL CreateCbasedPlugin(const char* interfaceName);

/** Ends a plugin and its record, stopping and unregistering it first where the host has not: a running one
 * still calls back `StopDone` from within. Any thread, but not from inside a callback of that plugin.
 * @param methods from `CreateCbasedPlugin` of this module. Anything else is logged and left untouched: null,
 *     another module's record, one that was disposed of already (unless a newer record has got its address).
 * @return whether it was a record of this module
 */
WREN_MODULE_API bool WREN_CALL DisposeCbasedPlugin(PresentationPluginCbasedMethods* methods);

#ifdef __cplusplus
}
#endif

#endif
