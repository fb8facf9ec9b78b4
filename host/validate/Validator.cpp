#include "host/validate/Validator.h"

#include "host/ChildProcess.h"
#include "host/HostError.h"
#include "host/TimeZone.h"
#include "host/validate/Expect.h"
#include "host/validate/Trial.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <future>
#include <thread>

namespace host::validate {
namespace {

/// What a check's dice start from: a check rolls the same alone as among all.
std::uint64_t seedOf(const Subject& subject, std::string_view check) {
    constexpr std::uint64_t basis = 0xcbf29ce484222325;
    constexpr std::uint64_t prime = 0x100000001b3;
    std::uint64_t hash = basis ^ subject.seed;
    for (const char character : check) {
        hash = (hash ^ static_cast<unsigned char>(character)) * prime;
    }
    return hash;
}

const Check* checkNamed(std::string_view name, PluginInterface way) {
    for (const Check* check : checksFor(way)) {
        if (check->name == name) {
            return check;
        }
    }
    throw HostError(joined({"no check is called \"", name, "\""}));
}

std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

Verdict verdictOf(const ChildEnd& end, std::chrono::milliseconds limit) {
    if (end.isOverdue) {
        return {Outcome::TimedOut, joined({"after ", std::to_string(limit.count()), " ms"})};
    }
    if (end.crash) {
        return {Outcome::Crashed, *end.crash};
    }
    const std::optional<Verdict> told = verdictIn(end.output);
    const bool isTrue = told && end.exitCode == (told->outcome == Outcome::Passed ? 0 : 1);
    return isTrue
               ? *told
               : Verdict{Outcome::Crashed, joined({"ended early with code ", std::to_string(end.exitCode)})};
}

std::vector<std::string> childArguments(const Subject& subject, std::string_view check) {
    return {"validate",
            subject.module.string(),
            "--interface",
            std::string(interfaceName(subject.way)),
            "--seed",
            std::to_string(subject.seed),
            joined({"--in-this-process=", check})};
}

Verdict runChildFor(const Subject& subject, std::string_view check) {
    return verdictOf(runChild(childArguments(subject, check), subject.limit), subject.limit);
}

} // namespace

Verdict runInThisProcess(const Subject& subject, std::string_view name) {
    const Check* check = name == loadOnly ? nullptr : checkNamed(name, subject.way);
    setTimeZone("UTC"); // what is shown in local time is then the same everywhere
    try {
        Trial trial(subject.module, subject.way, seedOf(subject, name));
        if (check != nullptr) {
            check->run(trial);
        }
    } catch (const std::exception& fault) {
        return {Outcome::Failed, oneLine(fault.what())};
    }
    return {};
}

void requireCheckable(const Subject& subject) {
    const Verdict verdict = runChildFor(subject, loadOnly);
    if (verdict.outcome == Outcome::Failed) {
        throw HostError(verdict.reason);
    }
    if (verdict.outcome != Outcome::Passed) {
        throw HostError(
            joined({"cannot load the module: ", subject.module.string(), ": ",
                    outcomeWords[static_cast<std::size_t>(verdict.outcome)], ", ", verdict.reason}));
    }
}

void runInChildren(const Subject& subject, const std::vector<const Check*>& checks,
                   const std::function<void(const Check&, const Verdict&)>& tell) {
    std::vector<std::promise<Verdict>> verdicts(checks.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&](const std::stop_token& stop) {
        for (std::size_t index = next++; index < checks.size() && !stop.stop_requested(); index = next++) {
            try {
                verdicts[index].set_value(runChildFor(subject, checks[index]->name));
            } catch (...) {
                verdicts[index].set_exception(std::current_exception());
            }
        }
    };
    const std::size_t count = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::jthread> workers; // last: they use the others, and stop early where an output fails
    for (std::size_t index = 0; index < std::min(count, checks.size()); ++index) {
        workers.emplace_back(work);
    }
    for (std::size_t index = 0; index < checks.size(); ++index) {
        tell(*checks[index], verdicts[index].get_future().get());
    }
}

} // namespace host::validate
