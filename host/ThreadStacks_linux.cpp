#include "host/ThreadStacks.h"

#include <execinfo.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace host {
namespace {

constexpr int deepest = 64; ///< frames of a stack

// What the signal's handler works with. A thread that answers too late finds itself no longer asked.
std::atomic<pid_t> asked = 0;
std::atomic<int> output = -1;
sem_t answered;

pid_t currentThread() { return static_cast<pid_t>(::syscall(SYS_gettid)); }

void writeStack(int descriptor) {
    std::array<void*, deepest> frames{};
    ::backtrace_symbols_fd(frames.data(), ::backtrace(frames.data(), deepest), descriptor);
}

void answer(int) {
    const int before = errno;
    pid_t self = currentThread();
    if (asked.compare_exchange_strong(self, 0)) {
        writeStack(output);
        ::sem_post(&answered);
    }
    errno = before;
}

/// The handler stays: a late signal without one would end the program.
int preparedSignal() {
    static const int signal = [] {
        std::array<void*, 1> frame{};
        ::backtrace(frame.data(), 1); // the first call loads a library, which no handler may do
        ::sem_init(&answered, 0, 0);
        struct sigaction action {};
        action.sa_handler = &answer;
        action.sa_flags = SA_RESTART;
        ::sigaction(SIGRTMIN, &action, nullptr);
        return SIGRTMIN;
    }();
    return signal;
}

void writeText(int descriptor, const std::string& text) {
    [[maybe_unused]] const ssize_t written = ::write(descriptor, text.data(), text.size());
}

bool askForStack(pid_t thread, int signal) {
    asked = thread;
    if (::syscall(SYS_tgkill, ::getpid(), thread, signal) != 0) {
        asked = 0;
        return false;
    }
    timespec until{};
    ::clock_gettime(CLOCK_REALTIME, &until);
    ++until.tv_sec;
    int result = 0;
    while ((result = ::sem_timedwait(&answered, &until)) != 0 && errno == EINTR) {
    }
    if (result != 0 && asked.exchange(0) == 0) { // it has just begun to answer
        while (::sem_wait(&answered) != 0) {
        }
        result = 0;
    }
    return result == 0;
}

std::string nameOf(const std::filesystem::path& task) {
    std::string name;
    std::ifstream file(task / "comm");
    std::getline(file, name);
    return name;
}

} // namespace

void printThreadStacks(int descriptor) {
    const int signal = preparedSignal();
    output = descriptor;
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        const auto thread = static_cast<pid_t>(std::atoi(task.path().filename().c_str()));
        writeText(descriptor, "thread " + std::to_string(thread) + " (" + nameOf(task.path()) + ")\n");
        if (thread == currentThread()) {
            writeStack(descriptor);
        } else if (!askForStack(thread, signal)) {
            writeText(descriptor, "does not answer\n");
        }
    }
}

} // namespace host
