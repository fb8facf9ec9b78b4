/* The places of the fields in the records of wren/PresentationPluginCbased.h, as C hosts rely on them. This
 * file compiles, or the build fails: by a C compiler and by a C++ compiler, and for pointers of 32 bits where
 * there is a compiler for them. */
#include "wren/PresentationPluginCbased.h"

#include <stddef.h>

/* Of the language itself: <assert.h> needs a C library, and there may be none for 32 bits. */
#ifdef __cplusplus
#define HOLDS static_assert
#else
#define HOLDS _Static_assert
#endif

/* A number of bytes where pointers have 32 bits, in those of this build. */
#define BYTES(bytes) ((bytes) / 4 * sizeof(void*))

#ifdef WREN_POINTERS_OF_32_BITS
HOLDS(sizeof(void*) == 4, "the compiler that was chosen builds for 32 bits");
HOLDS(sizeof(PresentationPluginCbasedMethods) == 68, "bytes");
HOLDS(sizeof(PresentationCbasedCallbacks) == 12, "bytes");
HOLDS(sizeof(TranslatorCbasedCallbacks) == 12, "bytes");
#endif

#define PLACE(record, field, bytes)                                                                          \
    HOLDS(offsetof(record, field) == BYTES(bytes), #record "." #field " is in its place")

PLACE(PresentationPluginCbasedMethods, size, 0);
PLACE(PresentationPluginCbasedMethods, handle, 4);
PLACE(PresentationPluginCbasedMethods, SupportsInterface, 8);
PLACE(PresentationPluginCbasedMethods, Register, 12);
PLACE(PresentationPluginCbasedMethods, Start, 16);
PLACE(PresentationPluginCbasedMethods, Stop, 20);
PLACE(PresentationPluginCbasedMethods, Unregister, 24);
PLACE(PresentationPluginCbasedMethods, IsUIEnabled, 28);
PLACE(PresentationPluginCbasedMethods, GetIdentity, 32);
PLACE(PresentationPluginCbasedMethods, GetLabel, 36);
PLACE(PresentationPluginCbasedMethods, GetDisplayVersion, 40);
PLACE(PresentationPluginCbasedMethods, Encrypt, 44);
PLACE(PresentationPluginCbasedMethods, Decrypt, 48);
PLACE(PresentationPluginCbasedMethods, EventNotification, 52);
PLACE(PresentationPluginCbasedMethods, IsMultiUserModeEnabled, 56);
PLACE(PresentationPluginCbasedMethods, GetPendingApprovalData, 60);
PLACE(PresentationPluginCbasedMethods, ApprovalEventNotification, 64);
HOLDS(sizeof(PresentationPluginCbasedMethods) == BYTES(68), "no more fields, no padding");

PLACE(PresentationCbasedCallbacks, context, 0);
PLACE(PresentationCbasedCallbacks, Notify, 4);
PLACE(PresentationCbasedCallbacks, StopDone, 8);
HOLDS(sizeof(PresentationCbasedCallbacks) == BYTES(12), "no more fields, no padding");

PLACE(TranslatorCbasedCallbacks, context, 0);
PLACE(TranslatorCbasedCallbacks, TranslatorOperation1, 4);
PLACE(TranslatorCbasedCallbacks, TranslatorOperation2, 8);
HOLDS(sizeof(TranslatorCbasedCallbacks) == BYTES(12), "no more fields, no padding");
