#include "host/Interrupt.h"

#include <cerrno>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <utility>

namespace host {

Interrupt::Interrupt() {
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGINT);
    sigaddset(&awaited, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &awaited, &before);
    descriptor = ::signalfd(-1, &awaited, SFD_CLOEXEC | SFD_NONBLOCK);
}

Interrupt::~Interrupt() {
    restore();
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

void Interrupt::wait() {
    int received = 0;
    sigwait(&awaited, &received);
    restore();
}

bool Interrupt::waitForInput() {
    pollfd waited[] = {{descriptor, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    while (::poll(waited, 2, -1) < 0 && errno == EINTR) {
    }
    if (waited[0].revents != 0) {
        wait();
        return false;
    }
    return true;
}

void Interrupt::restore() {
    if (std::exchange(isBlocked, false)) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
}

} // namespace host
