#include "backend-sim/Backend.h"

namespace sim {

Backend& Backend::instance() {
    static Backend backend;
    return backend;
}

} // namespace sim
