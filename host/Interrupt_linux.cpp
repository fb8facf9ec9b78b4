#include "host/Interrupt.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <utility>

namespace host {

/// The signals that end the program are blocked meanwhile, on this thread and on those that it starts.
struct Interrupt::State {
    sigset_t awaited{};
    sigset_t before{};
    bool isBlocked = true;
    int descriptor = -1; ///< becomes readable with an interruption

    void restore() {
        if (std::exchange(isBlocked, false)) {
            pthread_sigmask(SIG_SETMASK, &before, nullptr);
        }
    }
};

Interrupt::Interrupt()
    : state(std::make_unique<State>()) {
    sigemptyset(&state->awaited);
    sigaddset(&state->awaited, SIGINT);
    sigaddset(&state->awaited, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &state->awaited, &state->before);
    state->descriptor = ::signalfd(-1, &state->awaited, SFD_CLOEXEC | SFD_NONBLOCK);
}

Interrupt::~Interrupt() {
    state->restore();
    if (state->descriptor >= 0) {
        ::close(state->descriptor);
    }
}

void Interrupt::wait() {
    int received = 0;
    sigwait(&state->awaited, &received);
    state->restore();
}

bool Interrupt::waitForInput() {
    pollfd waited[] = {{state->descriptor, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    while (::poll(waited, 2, -1) < 0 && errno == EINTR) {
    }
    if (waited[0].revents != 0) {
        wait();
        return false;
    }
    return true;
}

} // namespace host
