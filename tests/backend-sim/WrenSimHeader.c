/* The control header is plain C: this file compiles, or the build fails. */
#include "backend-sim/WrenSim.h"

WrenSimDelivery deliverFromC(const char* json);

WrenSimDelivery deliverFromC(const char* json) {
    return wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, json);
}
