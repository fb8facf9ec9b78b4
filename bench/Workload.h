/// The works that are measured, and the bare works that they are held against.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// One work, ready to be done again and again. Whatever it needs beforehand its constructor has made.
class Workload {
public:
    Workload() = default;
    Workload(const Workload&) = delete;
    Workload& operator=(const Workload&) = delete;
    virtual ~Workload() = default;

    /// Does the work once.
    virtual void step() = 0;
};

struct WorkloadEntry {
    std::string name;
    unsigned steps; ///< make a steady figure when instructions are counted
    std::function<std::unique_ptr<Workload>()> make;
};

/// A short work of that kind, under that name.
template <class Kind>
WorkloadEntry entryOf(const char* name) {
    return {name, 1'000, [] { return std::make_unique<Kind>(); }};
}

std::vector<WorkloadEntry> documentWorkloads();
std::vector<WorkloadEntry> logWorkloads();
std::vector<WorkloadEntry> machineWorkloads();

/// Works that may be ready in one process. Those of different kinds may not: each kind sets the log filter.
struct WorkloadKind {
    std::string name;
    std::vector<WorkloadEntry> entries;
};
std::vector<WorkloadKind> workloadKinds();

/// The work of that name.
/// @throws std::invalid_argument where there is none
WorkloadEntry findWorkload(std::string_view name);

} // namespace bench
