/// A service library whose threads never rest: they deliver for as long as there is a receiver, through the
/// stop and past it. Each locks the weak pointer around every call, as it must, and looks at nothing else.
#pragma once

#include "wren/Export.h"

extern "C" {

/// Starts so many threads, which go on until `busyEnd`.
WREN_BACKEND_API void busyBegin(unsigned threads);
WREN_BACKEND_API void busyEnd();
/// Documents that a receiver has taken.
WREN_BACKEND_API unsigned long busyDeliveries();
/// From now on, whether the service keeps its weak pointer when it is stopped.
WREN_BACKEND_API void busyKeepReceiver(bool kept);
/// Lets go of what it has kept.
WREN_BACKEND_API void busyForgetReceiver();
}
