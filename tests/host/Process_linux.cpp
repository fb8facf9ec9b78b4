#include "tests/host/Process.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace test {
namespace {

bool readSome(int end, std::string& text) {
    char part[4096];
    const ssize_t count = ::read(end, part, sizeof part);
    text.append(part, count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

void readAll(int end, std::string& text) {
    while (readSome(end, text)) {
    }
}

/// Becomes the program.
[[noreturn]] void execute(const ProcessPlan& plan, int out, int error) {
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(plan.joinsErrors ? out : error, STDERR_FILENO);
    if (!plan.folder.empty() && ::chdir(plan.folder.c_str()) != 0) {
        ::_exit(127);
    }
    const std::string program = plan.program.string();
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : plan.arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    ::execv(program.c_str(), words.data());
    ::_exit(127);
}

} // namespace

struct Process::State {
    pid_t child = -1;
    int out = -1;
    int error = -1;
    std::string caught;

    void signal(int number) const { ::kill(child, number); }
};

Process::Process(const ProcessPlan& plan)
    : state(std::make_unique<State>()) {
    std::array<int, 2> out{};
    std::array<int, 2> error{};
    // Another child would keep the ends of the pipes open if it inherited them.
    if (::pipe2(out.data(), O_CLOEXEC) != 0 || ::pipe2(error.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make a pipe");
    }
    state->child = ::fork();
    if (state->child == 0) {
        execute(plan, out[1], error[1]);
    }
    ::close(out[1]);
    ::close(error[1]);
    state->out = out[0];
    state->error = error[0];
}

Process::~Process() {
    if (state->child > 0) {
        state->signal(SIGKILL);
        ::waitpid(state->child, nullptr, 0);
    }
    ::close(state->out);
    ::close(state->error);
}

const std::string& Process::waitForOutput(const std::string& text) {
    while (state->caught.find(text) == std::string::npos && readSome(state->out, state->caught)) {
    }
    return state->caught;
}

void Process::interrupt() const { state->signal(SIGINT); }
void Process::terminate() const { state->signal(SIGTERM); }

ProcessEnd Process::finish() {
    ProcessEnd end;
    std::thread reader([&] { readAll(state->error, end.error); });
    readAll(state->out, state->caught);
    reader.join();
    int status = 0;
    ::waitpid(state->child, &status, 0);
    state->child = -1;
    end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end.out = state->caught;
    return end;
}

} // namespace test
