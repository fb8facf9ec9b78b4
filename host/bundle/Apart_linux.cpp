#include "host/bundle/Apart.h"

#include "host/HostError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <mutex>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace host::bundle {
namespace {

using Clock = std::chrono::steady_clock;

/// How much of what the work writes is kept at the least: its end.
constexpr std::size_t mostBytes = std::size_t{32} << 20;

/// Both ends of a pipe.
class Pipe {
public:
    Pipe() {
        if (::pipe(ends.data()) != 0) {
            throw HostError("cannot make a pipe: " + std::string(std::strerror(errno)));
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        ::close(ends[0]);
        closeWriting();
    }

    int reading() const { return ends[0]; }
    int writing() const { return ends[1]; }
    void closeWriting() {
        if (ends[1] >= 0) {
            ::close(ends[1]);
            ends[1] = -1;
        }
    }

private:
    std::array<int, 2> ends{-1, -1};
};

/// Writes all of it, or as much as somebody reads.
void writeAll(int end, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(end, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

/// The doubled process: does the work and nothing that the first one had still to do.
[[noreturn]] void runChild(const Work& work, const Pipe& pipe) {
    std::mutex mutex;
    work([&](std::string_view line) {
        const std::lock_guard lock(mutex);
        writeAll(pipe.writing(), std::string(line) + "\n");
    });
    ::_exit(0);
}

/// Reads up to the end, and keeps the last part of what is long.
/// @return false where it did not come in time
bool readAll(int end, std::string& text, Clock::time_point deadline) {
    char part[16 * 1024];
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd polled{end, POLLIN, 0};
        const int ready = ::poll(&polled, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 1'000'000)));
        if (ready == 0) {
            return false;
        }
        const ssize_t count = ready > 0 ? ::read(end, part, sizeof part) : -1;
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return true;
        }
        text.append(part, count > 0 ? static_cast<std::size_t>(count) : 0);
        if (text.size() > 2 * mostBytes) {
            text.erase(0, text.size() - mostBytes);
        }
    }
}

std::string problemOf(int status, bool isLate) {
    if (isLate) {
        return "the module did not come to an end and was given up";
    }
    if (WIFSIGNALED(status)) {
        return "the module crashed: " + std::string(::strsignal(WTERMSIG(status)));
    }
    return WEXITSTATUS(status) == 0
               ? ""
               : "the module ended the process with code " + std::to_string(WEXITSTATUS(status));
}

} // namespace

ApartOutcome runApart(const Work& work, std::chrono::milliseconds limit) {
    Pipe pipe;
    std::cout << std::flush; // or both processes would write what is left
    const pid_t child = ::fork();
    if (child < 0) {
        throw HostError("cannot start a process: " + std::string(std::strerror(errno)));
    }
    if (child == 0) {
        runChild(work, pipe);
    }
    pipe.closeWriting();
    ApartOutcome outcome;
    const bool isLate = !readAll(pipe.reading(), outcome.lines, Clock::now() + limit);
    if (isLate) {
        ::kill(child, SIGKILL);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    outcome.problem = problemOf(status, isLate);
    return outcome;
}

} // namespace host::bundle
