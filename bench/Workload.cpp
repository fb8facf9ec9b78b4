#include "bench/Workload.h"

#include <algorithm>
#include <stdexcept>

namespace bench {

std::vector<WorkloadKind> workloadKinds() {
    return {{"documents", documentWorkloads()}, {"log", logWorkloads()}, {"machine", machineWorkloads()}};
}

WorkloadEntry findWorkload(std::string_view name) {
    for (const WorkloadKind& kind : workloadKinds()) {
        const auto found = std::ranges::find(kind.entries, name, &WorkloadEntry::name);
        if (found != kind.entries.end()) {
            return *found;
        }
    }
    throw std::invalid_argument(std::string("no such work: ").append(name));
}

} // namespace bench
