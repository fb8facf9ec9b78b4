// wren-bench                   the table: what the module's works cost, and what they may cost
// wren-bench --check [KIND]    counts what can be counted quickly; exits with 1 where that is too much
// wren-bench steps WORK COUNT  does one work, for a profiler that watches wrenBenchCountedSteps
// wren-bench times KIND        the times of all works of a kind (documents or others), for the table
// wren-bench list              the works

#include "bench/Meter.h"
#include "bench/Table.h"

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

std::vector<bench::WorkloadEntry> worksOf(const std::string& name) {
    for (bench::WorkloadKind& kind : bench::workloadKinds()) {
        if (kind.name == name) {
            return std::move(kind.entries);
        }
    }
    throw std::invalid_argument("no such kind of works: " + name);
}

int run(const std::vector<std::string>& arguments) {
    const std::string command = arguments.empty() ? "table" : arguments[0];
    if (command == "table" && arguments.size() <= 1) {
        bench::printTable();
    } else if (command == "--check" && arguments.size() <= 2) {
        return bench::check(arguments.size() == 2 ? arguments[1] : "") ? 0 : 1;
    } else if (command == "steps" && arguments.size() == 3) {
        bench::doSteps(*bench::findWorkload(arguments[1]).make(),
                       static_cast<unsigned>(std::stoul(arguments[2])));
    } else if (command == "times" && arguments.size() == 2) {
        for (const auto& [name, time] : bench::timesOf(worksOf(arguments[1]))) {
            std::printf("%s %.17g\n", name.c_str(), time);
        }
    } else if (command == "list" && arguments.size() == 1) {
        for (const bench::WorkloadKind& kind : bench::workloadKinds()) {
            for (const bench::WorkloadEntry& entry : kind.entries) {
                std::printf("%s %s\n", kind.name.c_str(), entry.name.c_str());
            }
        }
    } else {
        std::fputs("usage: wren-bench [--check [KIND] | steps WORK COUNT | times KIND | list]\n", stderr);
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "wren-bench: %s\n", failure.what());
        return 2;
    }
}
