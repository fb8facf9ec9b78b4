#include "host/Commands.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/validate/Check.h"
#include "host/validate/Validator.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <random>

namespace host {
namespace {

namespace json = boost::json;
using validate::Check;
using validate::Outcome;
using validate::outcomeWords;
using validate::Subject;
using validate::Verdict;

/// The checks whose name contains what is asked for.
std::vector<const Check*> chosen(const ValidateOptions& options) {
    std::vector<const Check*> checks = validate::checksFor(options.way);
    std::erase_if(checks, [&](const Check* check) {
        return check->name.find(options.include) == std::string_view::npos;
    });
    if (checks.empty()) {
        throw HostError("no check's name contains \"" + options.include +
                        "\"; \"validate --list\" tells the names");
    }
    return checks;
}

/// Tells what comes of the checks.
class Reporter {
public:
    Reporter(const Subject& usedSubject, bool printsJson)
        : subject(usedSubject)
        , asJson(printsJson) {}

    void tell(const Check& check, const Verdict& verdict) {
        ++counts[static_cast<std::size_t>(verdict.outcome)];
        const std::string_view outcome = outcomeWords[static_cast<std::size_t>(verdict.outcome)];
        if (asJson) {
            json::object line{{"check", check.name}, {"outcome", outcome}};
            if (!verdict.reason.empty()) {
                line.emplace("reason", verdict.reason);
            }
            print(json::serialize(line));
        } else {
            std::cout << std::left << std::setw(11) << outcome;
            print(std::string(check.name)
                      .append(verdict.reason.empty() ? "" : ": ")
                      .append(printable(verdict.reason)));
        }
    }

    void summarise() const {
        if (asJson) {
            print(json::serialize(json::object{{"summary",
                                                {{"module", subject.module.string()},
                                                 {"interface", interfaceName(subject.way)},
                                                 {"seed", subject.seed},
                                                 {"checks", total()},
                                                 {"passed", count(Outcome::Passed)},
                                                 {"failed", count(Outcome::Failed)},
                                                 {"crashed", count(Outcome::Crashed)},
                                                 {"timed_out", count(Outcome::TimedOut)}}}}));
            return;
        }
        std::cout << total() << " checks: " << count(Outcome::Passed) << " passed";
        for (const Outcome outcome : {Outcome::Failed, Outcome::Crashed, Outcome::TimedOut}) {
            std::cout << ", " << count(outcome) << ' ' << outcomeWords[static_cast<std::size_t>(outcome)];
        }
        print(std::string(" (interface ")
                  .append(interfaceName(subject.way))
                  .append(", seed ")
                  .append(std::to_string(subject.seed))
                  .append(")"));
    }

    bool hasPassed() const { return count(Outcome::Passed) == total(); }

private:
    static void print(const std::string& line) {
        if (!(std::cout << line << std::endl)) { // at once: the next check may take a while
            throw HostError("cannot write the output");
        }
    }
    std::size_t count(Outcome outcome) const { return counts[static_cast<std::size_t>(outcome)]; }
    std::size_t total() const {
        std::size_t sum = 0;
        for (const std::size_t part : counts) {
            sum += part;
        }
        return sum;
    }

    const Subject& subject;
    const bool asJson;
    std::array<std::size_t, outcomeWords.size()> counts{};
};

void list(const std::vector<const Check*>& checks, bool asJson) {
    for (const Check* check : checks) {
        if (asJson) {
            std::cout << json::serialize(
                             json::object{{"check", check->name}, {"description", check->description}})
                      << '\n';
        } else {
            std::cout << std::left << std::setw(38) << check->name << ' ' << check->description << '\n';
        }
    }
    if (!std::cout.flush()) {
        throw HostError("cannot write the output");
    }
}

} // namespace

bool validateModule(const ValidateOptions& options) {
    const Subject subject{options.module, options.way, options.seed ? *options.seed : std::random_device()(),
                          std::chrono::seconds(options.limitSeconds)};
    if (!options.onlyCheck.empty()) {
        const Verdict verdict = validate::runInThisProcess(subject, options.onlyCheck);
        std::cout << '\n' << validate::verdictLine(verdict) << std::endl;
        return verdict.outcome == Outcome::Passed;
    }
    const std::vector<const Check*> checks = chosen(options);
    if (options.lists) {
        list(checks, options.asJson);
        return true;
    }
    validate::requireCheckable(subject);
    Reporter reporter(subject, options.asJson);
    validate::runInChildren(
        subject, checks, [&](const Check& check, const Verdict& verdict) { reporter.tell(check, verdict); });
    reporter.summarise();
    return reporter.hasPassed();
}

} // namespace host
