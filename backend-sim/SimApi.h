/// The objects that the library hands out.
#pragma once

#include "backend-sim/Connection.h"
#include "wren/QuillApi.h"

#include <memory>

namespace sim {

class Backend;

/// @param backend must outlive the object
std::shared_ptr<IQuillApiFactory> makeFactory(Backend& backend);

/// @param backend must outlive the object
std::shared_ptr<IQuillApi> makeApi(Backend& backend, std::shared_ptr<Connection> connection);

} // namespace sim
