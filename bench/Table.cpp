#include "bench/Table.h"

#include "bench/Meter.h"
#include "host/ProgramPath.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace bench {
namespace {

constexpr double tolerance = 1.05;

double growth(const Cost& cost, const std::string& works) {
    return std::log(cost(works + "-10000") / cost(works + "-100")) / std::log(100.0);
}

double alone(const Cost& cost, const std::string& work) { return cost(work) - cost("nothing"); }

double to(const Cost& cost, const std::string& work, const std::string& yardstick) {
    return cost(work) / cost(work + yardstick);
}

/// A cost that is measured once for each work.
Cost remembered(std::function<double(const WorkloadEntry&)> measure) {
    return [measure = std::move(measure),
            known = std::map<std::string, double>()](const std::string& work) mutable {
        const auto found = known.find(work);
        return found != known.end() ? found->second
                                    : known.emplace(work, measure(findWorkload(work))).first->second;
    };
}

/// The times of all works. Those of one kind take turns in a child in which nothing else runs.
Cost timesInChildren() {
    std::map<std::string, double> times;
    for (const WorkloadKind& kind : workloadKinds()) {
        for (const std::string& line : linesOf("'" + host::programPath().string() + "' times " + kind.name)) {
            const std::size_t blank = line.find(' ');
            times[line.substr(0, blank)] = std::stod(line.substr(blank));
        }
    }
    return [times](const std::string& work) { return times.at(work); };
}

std::string verdictOf(const Row& row, double figure) {
    if (figure > row.must) {
        return "MISSED";
    }
    return figure > row.aim ? "met" : "aim met";
}

void printRow(const Row& row, const std::string& instructions, const std::string& time, double figure) {
    std::printf("| %-62.*s | %-12.*s | %8.4g | %8.4g | %10s | %10s | %-7s |\n",
                static_cast<int>(row.work.size()), row.work.data(), static_cast<int>(row.unit.size()),
                row.unit.data(), row.must, row.aim, instructions.c_str(), time.c_str(),
                verdictOf(row, figure).c_str());
    std::fflush(stdout);
}

std::string inShort(double figure) {
    char text[32];
    std::snprintf(text, sizeof text, figure < 100 ? "%.3g" : "%.0f", figure);
    return text;
}

void printTold(const char* what, double figure, const char* unit) {
    std::printf("| %-62s | %-12s | %8s | %8s | %10s | %10s | %-7s |\n", what, unit, "", "",
                inShort(figure).c_str(), "", "told");
}

} // namespace

const std::vector<Row>& rows() {
    using enum Measured;
    // clang-format off
    static const std::vector<Row> table{
        {"documents", "a status equal to the cached one, in another text, 2.3 kB",    "D",            1.3,    1.15,  Instructions, [](const Cost& cost) { return to(cost, "status-equal", "/D"); },             true},
        {"documents", "the very same text again",                                     "D",            0.3,    0.22,  Instructions, [](const Cost& cost) { return to(cost, "status-same", "/D"); },              true},
        {"documents", "a changed status, all its notices",                            "D",            3.2,    1.5,   Instructions, [](const Cost& cost) { return to(cost, "status-changed", "/D"); },           true},
        {"documents", "a changed status, all its notices",                            "S",            1.0,    0.5,   Instructions, [](const Cost& cost) { return to(cost, "status-changed", "/S"); },           true},
        {"documents", "the same with 1,000 proxies and 1,000 fingerprints",           "D",            2.0,    1.4,   Instructions, [](const Cost& cost) { return to(cost, "status-changed-large", "/D"); },     true},
        {"documents", "a dataplane document with 10,000 alerts, one changed",         "D, time",      1.5,    1.35,  Time,         [](const Cost& cost) { return to(cost, "alerts-one-10000", "/D"); },         false},
        {"growth",    "growth from 100 to 10,000 alerts, one changed",                "exponent",     1.05,   1.0,   Instructions, [](const Cost& cost) { return growth(cost, "alerts-one"); },                 true},
        {"growth",    "growth from 100 to 10,000 alerts, every one changed",          "exponent",     1.05,   1.0,   Instructions, [](const Cost& cost) { return growth(cost, "alerts-every"); },               true},
        {"growth",    "growth from 100 to 10,000 alerts, only their order changed",   "exponent",     1.05,   1.0,   Instructions, [](const Cost& cost) { return growth(cost, "alerts-order"); },               true},
        {"growth",    "growth from 100 to 10,000 alerts, titles of one hash",         "exponent",     1.05,   1.05,  Instructions, [](const Cost& cost) { return growth(cost, "alerts-alike"); },               true},
        {"log",       "a log statement that the filter drops",                        "instructions", 12,     6,     Instructions, [](const Cost& cost) { return alone(cost, "log-dropped"); },                 true},
        {"log",       "a log line that the filter accepts, to a sink that drops it",  "instructions", 10'000, 3'500, Instructions, [](const Cost& cost) { return alone(cost, "log-accepted"); },                true},
        {"machine",   "one event through the machine, five regions, nobody logging",  "instructions", 140,    60,    Instructions, [](const Cost& cost) { return alone(cost, "event-taken"); },                 true},
        {"machine",   "an event that nobody takes",                                   "instructions", 55,     25,    Instructions, [](const Cost& cost) { return alone(cost, "event-untaken"); },               true},
        {"documents", "allocations of a redundant status, in another text",           "allocations",  20,     0,     Allocations,  [](const Cost& cost) { return cost("status-equal"); },                       true},
    };
    // clang-format on
    return table;
}

void printTable() {
    const Cost instructions = remembered(instructionsOf);
    const Cost allocations = remembered(allocationsOf);
    const Cost times = timesInChildren();
    std::printf("D is the bare boost::json::parse of the same text; S is D, and the same notices built and "
                "printed by "
                "rapidxml\nfrom kept documents. Times are processor time, the smallest of several.\n\n"
                "| %-62s | %-12s | %8s | %8s | %10s | %10s | %-7s |\n|%s|%s|%s|%s|%s|%s|%s|\n",
                "work", "told in", "must", "aim", "counted", "timed", "", std::string(64, '-').c_str(),
                std::string(14, '-').c_str(), std::string(10, '-').c_str(), std::string(10, '-').c_str(),
                std::string(12, '-').c_str(), std::string(12, '-').c_str(), std::string(9, '-').c_str());
    for (const Row& row : rows()) {
        if (row.measured == Measured::Allocations) {
            const double figure = row.figure(allocations);
            printRow(row, inShort(figure), "", figure);
            continue;
        }
        const double counted = row.figure(instructions);
        const double timed = row.figure(times);
        printRow(row, inShort(counted), inShort(timed) + (row.unit == "instructions" ? " ns" : ""),
                 row.measured == Measured::Time ? timed : counted);
    }
    const Footprint footprint = footprintOfModule();
    printTold("from before the module is loaded to its first notice", footprint.microsecondsToFirstNotice,
              "us");
    printTold("resident memory of the plugin at rest", footprint.residentKilobytes, "kB");
    printTold("size of the stripped module", footprint.strippedBytes / 1024, "kB");
}

bool check(std::string_view kind) {
    const Cost instructions = remembered(instructionsOf);
    const Cost allocations = remembered(allocationsOf);
    bool isFine = true;
    unsigned checked = 0;
    for (const Row& row : rows()) {
        if (!row.isQuick || (!kind.empty() && row.kind != kind)) {
            continue;
        }
        ++checked;
        const double figure = row.figure(row.measured == Measured::Allocations ? allocations : instructions);
        if (figure > row.must * tolerance) {
            std::printf("too slow: %.*s: %.4g, must be at most %.4g (%.*s)\n",
                        static_cast<int>(row.work.size()), row.work.data(), figure, row.must,
                        static_cast<int>(row.unit.size()), row.unit.data());
            isFine = false;
        }
    }
    if (checked == 0) {
        throw std::invalid_argument(std::string("no such kind of works: ").append(kind));
    }
    return isFine;
}

} // namespace bench
