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
#include <stddef.h>
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

/** Starts the service anew in the state that a scenario describes, with its delays and its faults. It takes
 * effect behind what already waits for the delivery thread. An enrollment or unenrollment that runs fails
 * with "internal_error"; every running connection hears of "init" at once and of the new state soon after.
 * Until a scenario is loaded, the service has the device of `{}`: healthy, and not enrolled.
 * @param json one object as scenario.schema.json describes it
 * @param error receives the first thing that is wrong, such as "/device/certificate: 'expird' is none of ok,
 *     ...", cut to `error_size` bytes and ended by a NUL; an empty text if nothing is. May be null with size
 * 0.
 * @return whether the scenario was taken; if not, nothing has changed
 */
WREN_BACKEND_API bool wrensim_load_scenario(const char* json, char* error, size_t error_size);

/** Changes the service while it runs, behind what already waits for the delivery thread. Who listens is told
 * of what has changed by it. When the service goes down ("service_error"), whatever runs is over.
 * @param json one object with any part of a scenario: what it names is set, a list as a whole, and the rest
 *     stays. The keys of "device" may also stand at the top: {"certificate":"revoked"}.
 * @param error as for a scenario
 * @return whether it was taken; if not, nothing has changed
 */
WREN_BACKEND_API bool wrensim_set(const char* json, char* error, size_t error_size);

/** The service's present state, as the step that ended last has left it; waits for no callback. One JSON
 * object: "scenario" holds device, delays, logins and faults as they are now, and can be loaded again;
 * "enrollment" and "unenrollment" what runs, or null: "enrollment_id" and "stage" (of an enrollment
 * "requested", "started", "logging_in", "registering" or "cancelling", of an unenrollment "requested" or
 * "started"), of an enrollment also "is_renewal"; "connections" how many listen; "pace"; "unix_time" the
 * service's clock in seconds.
 * @param buffer receives the text, cut to `size` bytes and ended by a NUL; may be null with size 0
 * @return the length of the whole text without the NUL; 0 where memory runs out
 */
WREN_BACKEND_API size_t wrensim_state(char* buffer, size_t size);

/** What a user logs in for. */
typedef enum WrenSimLogin {
    wrensim_enrollment_login = 0, /**< an enrollment or re-enrollment; its id is the enrollment's */
    wrensim_dataplane_login = 1   /**< a dataplane authentication request; its id is the context id */
} WrenSimLogin;

/** The value of the cookie that the login page sets after a correct login. The name of the cookie stands in
 * the request that asks for the login, and the login's id in its "start_url", as the parameter "login". A
 * login is open from the sending of its request until the request is answered, gone or at its end.
 * @param id the login's id, or null for the one of its kind that was opened last
 * @param buffer receives the value, as `wrensim_state` receives its text
 * @return the length of the whole value; 0 if no such login is open
 */
WREN_BACKEND_API size_t wrensim_login_cookie(WrenSimLogin login, const char* id, char* buffer, size_t size);

/** Receives a page: the number of its HTTP status, and texts that are valid during the call. Only a status
 * from 300 to 399 has a `location` that is not null, and only where a cookie is to be set is `set_cookie`,
 * the value of the header of that name, not null.
 */
typedef void (*WrenSimPageReceiver)(void* context, uint32_t status, const char* location,
                                    const char* set_cookie, const char* html);

/** The service's login pages, as a browser would get them, without a network. The start address of a login
 * that is open shows a form with the fields "user" and "password"; when it is sent back with the login's
 * password, the answer sets the login's cookie and leads to its end address. A login that is over says so.
 * @param method of HTTP: "GET", "HEAD" or "POST"
 * @param url the whole address
 * @param body the form of a POST, URL-encoded; may be null
 * @param receive is called once, before this returns, unless it returns false
 * @return false for an address that is no login page of the service, for null texts, and where memory runs
 *     out
 */
WREN_BACKEND_API bool wrensim_login_page(const char* method, const char* url, const char* body,
                                         WrenSimPageReceiver receive, void* context);

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

/** Whether that connection took a receiver that still exists and was not let go. */
WREN_BACKEND_API bool wrensim_has_receiver(uint64_t api);

/** Lets go of the receiver of every connection, stopped or running: none hears of anything from then on.
 * Returns when the delivery thread is not inside any of them either; called on the delivery thread itself, it
 * doesn't wait for the callback that it is called from. The caller must hold no lock that a receiver needs.
 *
 * A receiver is remembered past the stop of its connection. When the connection's API object goes, stopped
 * before or not, it is let go, save in quiet mode: there it stays for late documents until this function is
 * called or the library is unloaded. On Windows each that is remembered when the plugin's module is unloaded
 * costs a few bytes: in quiet mode, call this first.
 */
WREN_BACKEND_API void wrensim_forget_receivers(void);

/** Waits until the service has nothing left to do: nothing runs and no step or document waits for its time.
 * What comes by itself, such as a status at intervals, is not waited for. While time is held, neither are
 * steps that lie ahead. The caller must hold no lock that a receiver needs.
 * @return false, without waiting, on the delivery thread
 */
WREN_BACKEND_API bool wrensim_wait_idle(void);

/** Stops the service's time and sets its wall clock to `unix_seconds`, seconds since 1970. It goes on only
 * by `wrensim_advance_time`. Time is real to begin with.
 */
WREN_BACKEND_API void wrensim_hold_time(int64_t unix_seconds);

/** Lets time that is held go on by that much, step by step: each thing that falls due happens at its time.
 * The call returns at once; `wrensim_wait_idle` waits for it all. Without effect while time is real.
 */
WREN_BACKEND_API void wrensim_advance_time(uint32_t milliseconds);

/** Lets time go on by itself again, the wall clock showing the real time. */
WREN_BACKEND_API void wrensim_release_time(void);

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

/** Is told of each document right before its receiver is called, on the delivery thread, with no lock of the
 * stand-in held. It may take its time: everything that the stand-in has still to do waits for it.
 * @param json valid during the call
 * @return whether the receiver is to be called. A document that is turned away counts as having found no
 *     receiver.
 */
typedef bool (*WrenSimBeforeDocument)(void* context, uint64_t api, WrenSimDocument document,
                                      const char* json);
/** Is told on the same thread when the receiver has returned. */
typedef void (*WrenSimAfterDocument)(void* context, uint64_t api, WrenSimDocument document);

/** Sets the one pair that watches documents; each may be null. A document that is under way may still reach
 * the pair before: its context has to outlive that. `wrensim_forget_receivers` waits for its end.
 * @param context passed to both, not owned
 */
WREN_BACKEND_API void wrensim_watch_documents(WrenSimBeforeDocument before, WrenSimAfterDocument after,
                                              void* context);

#ifdef __cplusplus
}
#endif

#endif
