#include "common2/util/ForeignCall.h"

// All of the process unwinds alike: an exception releases what it passes.
bool common2::runForeignCall(void (*call)(void* context), void* context) {
    call(context);
    return true;
}
