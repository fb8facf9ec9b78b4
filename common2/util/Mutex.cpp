#include "common2/util/Mutex.h"

#include <pthread.h>

namespace common2 {

// The standard library ends no lock that needs no beginning. The system's does on Windows: when first held it
// makes two semaphores, which would stay.
SharedMutex::~SharedMutex() {
    ::pthread_rwlock_destroy(static_cast<pthread_rwlock_t*>(mutex.native_handle()));
}

} // namespace common2
