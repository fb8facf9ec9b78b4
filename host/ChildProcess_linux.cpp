#include "host/ChildProcess.h"

#include "host/HostError.h"
#include "host/ProgramPath.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace host {
namespace {

[[noreturn]] void cannot(const char* what, int error) {
    throw HostError(std::string("cannot ").append(what).append(": ").append(std::strerror(error)));
}

/// A descriptor that is closed at its end.
class Descriptor {
public:
    explicit Descriptor(int opened = -1)
        : number(opened) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return number; }
    void set(int opened) { number = opened; }
    void close() {
        if (number >= 0) {
            ::close(number);
            number = -1;
        }
    }

private:
    int number;
};

/// The child's standard streams.
class StreamPlan {
public:
    explicit StreamPlan(int output) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    StreamPlan(const StreamPlan&) = delete;
    StreamPlan& operator=(const StreamPlan&) = delete;
    ~StreamPlan() { ::posix_spawn_file_actions_destroy(&actions); }

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions{};
};

pid_t spawn(const std::vector<std::string>& arguments, int output) {
    const std::string program = programPath().string();
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    const StreamPlan streams(output);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, program.c_str(), streams.get(), nullptr, words.data(), environ);
    if (error != 0) {
        cannot("start a process", error);
    }
    return child;
}

/// A descriptor that can be read when the process has ended; -1 where the system has none to offer.
int openProcess(pid_t child) {
    // The C library's own header for this lacks its C linkage in the versions that are about.
    return static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
}

/// Appends what can be read.
/// @return whether more may come
bool readSome(int descriptor, std::string& text) {
    char part[4096];
    const ssize_t count = ::read(descriptor, part, sizeof part);
    text.append(part, count > 0 ? static_cast<std::size_t>(count) : 0);
    if (text.size() > 2 * keptOutput) {
        text.erase(0, text.size() - keptOutput);
    }
    return count > 0;
}

/// Gathers the output until the process ends; what it has left running may keep the pipe open longer. Without
/// a descriptor of the process the end of the output has to do.
/// @return false where that takes too long
bool gather(int process, int output, std::string& text, std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + limit;
    bool isOpen = true;
    for (;;) {
        pollfd waited[] = {{process, POLLIN, 0}, {isOpen ? output : -1, POLLIN, 0}};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        const int ready = ::poll(waited, 2, static_cast<int>(std::max<std::int64_t>(left, 0)));
        if (ready == 0) {
            return false;
        }
        if (ready > 0 && waited[1].revents != 0) {
            isOpen = readSome(output, text);
            if (!isOpen && process < 0) {
                return true;
            }
        } else if (ready > 0 && waited[0].revents != 0) {
            return true;
        }
    }
}

std::string nameOf(int signal) {
    const char* abbreviation = ::sigabbrev_np(signal);
    std::string name = std::string("signal ").append(std::to_string(signal));
    return abbreviation == nullptr ? name : name.append(" (SIG").append(abbreviation).append(")");
}

} // namespace

ChildEnd runChild(const std::vector<std::string>& arguments, std::chrono::milliseconds limit) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        cannot("make a pipe", errno);
    }
    const Descriptor output(ends[0]);
    Descriptor childsOutput(ends[1]);
    const pid_t child = spawn(arguments, childsOutput.get());
    childsOutput.close();
    const Descriptor process(openProcess(child));
    ChildEnd end;
    end.isOverdue = !gather(process.get(), output.get(), end.output, limit);
    if (end.isOverdue) {
        ::kill(child, SIGKILL);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) {
        end.exitCode = WEXITSTATUS(status);
    } else if (!end.isOverdue) {
        end.crash = nameOf(WTERMSIG(status));
    }
    return end;
}

} // namespace host
