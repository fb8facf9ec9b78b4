#include "bench/Meter.h"

#include "bench/Allocations.h"
#include "host/ProgramPath.h"

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <stdexcept>

/// The one function that is counted, by a name that valgrind can be told.
extern "C" __attribute__((noinline)) void wrenBenchCountedSteps(bench::Workload& workload, unsigned steps) {
    for (unsigned step = 0; step < steps; ++step) {
        workload.step();
    }
}

namespace bench {
namespace {

namespace fs = std::filesystem;

std::string quoted(const fs::path& path) { return "'" + path.string() + "'"; }

/// The smallest time of each work's repetitions: whatever else the machine does only ever adds to it.
class SmallestTimes final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const auto known =
                    times.try_emplace(run.run_name.function_name, run.GetAdjustedCPUTime()).first;
                known->second = std::min(known->second, run.GetAdjustedCPUTime());
            }
        }
    }

    std::map<std::string, double> times;
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void doSteps(Workload& workload, unsigned steps) {
    for (unsigned step = 0; step < warmUpSteps; ++step) {
        workload.step();
    }
    // What is not watched runs faster.
    CALLGRIND_START_INSTRUMENTATION;
    wrenBenchCountedSteps(workload, steps);
    CALLGRIND_STOP_INSTRUMENTATION;
}

double instructionsOf(const WorkloadEntry& entry) {
    const auto lines =
        linesOf("valgrind --tool=callgrind --callgrind-out-file=/dev/null "
                "--instr-atstart=no --toggle-collect=wrenBenchCountedSteps " +
                quoted(host::programPath()) + " steps " + entry.name + " " + std::to_string(entry.steps));
    constexpr std::string_view mark = "Collected : ";
    for (const std::string& line : lines) {
        if (const std::size_t at = line.find(mark); at != std::string::npos) {
            return std::stod(line.substr(at + mark.size())) / entry.steps;
        }
    }
    throw std::runtime_error("valgrind counted nothing");
}

double allocationsOf(const WorkloadEntry& entry) {
    const auto workload = entry.make();
    doSteps(*workload, warmUpSteps);
    const unsigned long before = allocations();
    wrenBenchCountedSteps(*workload, entry.steps);
    return static_cast<double>(allocations() - before) / entry.steps;
}

std::map<std::string, double> timesOf(const std::vector<WorkloadEntry>& entries) {
    constexpr int repetitions = 5;
    for (const WorkloadEntry& entry : entries) {
        const std::shared_ptr<Workload> workload = entry.make();
        benchmark::RegisterBenchmark(entry.name.c_str(), [workload](benchmark::State& state) {
            for (auto iteration : state) {
                static_cast<void>(iteration);
                workload->step();
            }
        })->Repetitions(repetitions);
    }
    std::vector<std::string> arguments{"wren-bench", "--benchmark_enable_random_interleaving=true",
                                       "--benchmark_min_time=0.1"};
    std::vector<char*> pointers;
    std::ranges::transform(arguments, std::back_inserter(pointers),
                           [](std::string& text) { return text.data(); });
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    SmallestTimes reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::ClearRegisteredBenchmarks();
    return reporter.times;
}

Footprint footprintOfModule() {
    constexpr int loads = 11;
    const std::string loader = quoted(host::programPath().replace_filename("wren-bench-load"));
    std::vector<double> times;
    std::vector<double> sizes;
    for (int load = 0; load < loads; ++load) {
        const auto lines = linesOf(loader + " " + quoted(WREN_MODULE_FILE));
        times.push_back(std::stod(lines.at(0)));
        sizes.push_back(std::stod(lines.at(1)));
    }
    const auto file = fs::temp_directory_path() / ("wren-bench-stripped-" + std::to_string(::getpid()));
    linesOf(WREN_STRIP " -o " + quoted(file) + " " + quoted(WREN_MODULE_FILE));
    const auto bytes = static_cast<double>(fs::file_size(file));
    fs::remove(file);
    return {medianOf(times), medianOf(sizes), bytes};
}

std::vector<std::string> linesOf(const std::string& command) {
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::string text;
    for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
        text += static_cast<char>(character);
    }
    if (::pclose(pipe) != 0) {
        throw std::runtime_error(command + " failed:\n" + text);
    }
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        lines.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return lines;
}

} // namespace bench
