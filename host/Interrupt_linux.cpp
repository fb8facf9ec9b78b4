#include "host/Interrupt.h"

#include <pthread.h>

#include <utility>

namespace host {

Interrupt::Interrupt() {
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGINT);
    sigaddset(&awaited, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &awaited, &before);
}

Interrupt::~Interrupt() { restore(); }

void Interrupt::wait() {
    int received = 0;
    sigwait(&awaited, &received);
    restore();
}

void Interrupt::restore() {
    if (std::exchange(isBlocked, false)) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
}

} // namespace host
