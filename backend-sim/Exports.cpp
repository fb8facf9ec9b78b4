// What the library exports to plugins, beside the control functions of WrenSim.h.
#include "backend-sim/Backend.h"

#include "wren/QuillApi.h"

IQuillApiCallbacks::IQuillApiCallbacks() = default;
IQuillApiCallbacks::~IQuillApiCallbacks() = default;

QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    return sim::Backend::instance().getFactory(factory);
}
