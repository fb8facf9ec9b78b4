/** Control of the stand-in backend: what a real service would do by itself, done on command.
 *
 * The stand-in has one delivery thread, on which every document reaches its receiver. All functions here may
 * be called from any thread, also from inside a callback or an observer, save where a function says
 * otherwise. Texts are NUL-terminated; they are copied where they outlive the call. Nothing here throws and
 * nothing hands out ownership.
 */
#ifndef WREN_SIM_H
#define WREN_SIM_H

#include "wren/Export.h"

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The documents that the library delivers, in the order of the receiver's operations. */
typedef enum WrenSimDocument {
    wrensim_status_notification = 0,
    wrensim_enrollment_status_notification = 1,
    wrensim_enrollment_auth_request = 2,
    wrensim_unenrollment_status_notification = 3,
    wrensim_dataplane_notification = 4
} WrenSimDocument;

/** What became of a document. */
typedef enum WrenSimDelivery {
    wrensim_delivered = 0,   /**< the receiver was called; waiting or not, as the function says */
    wrensim_no_receiver = 1, /**< nobody to call: never started, or the receiver is gone */
    wrensim_refused = 2 /**< a null text, an unknown document, or waiting on the delivery thread itself */
} WrenSimDelivery;

/** Stands for the connection that was made last. */
#define WRENSIM_LATEST_API UINT64_C(0)

/** In quiet mode the stand-in does only what it is told; otherwise it behaves as the service of a device.
 * Starts out false. Takes effect with the next call of the plugin; documents that wait to be sent by the
 * service are dropped while the mode is on.
 */
WREN_BACKEND_API void wrensim_set_quiet(bool quiet);

/** The service's delays in percent: 100 to begin with, 0 lets every step follow the last one at once. */
WREN_BACKEND_API void wrensim_set_pace(uint32_t percent);

/** Delivers `json`, whatever it holds, behind the documents that already wait, and returns at once.
 * @param api number of the connection, as the observer tells it, or `WRENSIM_LATEST_API`. A connection that
 *     was stopped keeps its receiver: such a document is a late one.
 * @return wrensim_delivered once the document waits for the delivery thread; wrensim_no_receiver where the
 *     connection does not exist or never took a receiver
 */
WREN_BACKEND_API WrenSimDelivery wrensim_deliver(uint64_t api, WrenSimDocument document, const char* json);

/** The same, but returns when the receiver's callback has returned. The caller must hold no lock that the
 * receiver needs. On the delivery thread itself it is refused, because it would wait for its own end.
 * @return wrensim_no_receiver also where the receiver is gone by the time that the document's turn comes
 */
WREN_BACKEND_API WrenSimDelivery wrensim_deliver_and_wait(uint64_t api, WrenSimDocument document,
                                                          const char* json);

/** Whether that connection took a receiver that still exists. */
WREN_BACKEND_API bool wrensim_has_receiver(uint64_t api);

/** The next `times` calls of an operation answer with `result` and, unless that is 0, do nothing else.
 * A second call for the same operation replaces what the first left over; 0 times takes it back.
 * @param operation name of an operation of the connection, "CreateApi" or "GetQuillApiFactory"
 * @param result any number, also one without a name
 * @return false for a name that is null or unknown
 */
WREN_BACKEND_API bool wrensim_set_result(const char* operation, uint32_t result, uint32_t times);

/** Whether "CreateApi" succeeds with a null object. */
WREN_BACKEND_API void wrensim_set_null_api(bool null_api);

/** Whether the factory is gone. While it is, "GetQuillApiFactory" succeeds with an expired pointer. A pointer
 * that has expired stays so: after the factory is back, it takes a new call to get hold of it.
 */
WREN_BACKEND_API void wrensim_set_factory_expired(bool expired);

/** Takes back every waiting result, the null object and the expired factory. Mode, pace and observer stay. */
WREN_BACKEND_API void wrensim_reset(void);

/** Is told of each call that reaches the library, on the calling thread, before the operation does its work.
 * @param api number of the connection; 0 for "GetQuillApiFactory" and "CreateApi"
 * @param operation name, in static storage
 * @param json the request as received, or null; valid during the call
 */
typedef void (*WrenSimObserver)(void* context, uint64_t api, const char* operation, const char* json);

/** Sets the one observer, or none with null. A call that is under way on another thread may still reach the
 * one before: its context has to outlive the calls.
 * @param context passed to the observer, not owned
 */
WREN_BACKEND_API void wrensim_observe(WrenSimObserver observer, void* context);

#ifdef __cplusplus
}
#endif

#endif
