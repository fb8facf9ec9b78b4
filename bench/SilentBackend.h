/// A backend library inside the program: it answers every request with success and delivers nothing by
/// itself.
#pragma once

#include "wren/QuillApi.h"

#include <memory>

namespace bench {

/// Whoever was last started to receive documents; null where that has gone. It is forgotten with this: what
/// the module made must not outlive it here.
std::shared_ptr<IQuillApiCallbacks> takeReceiver();

} // namespace bench
