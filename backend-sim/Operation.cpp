#include "backend-sim/Operation.h"

#include <algorithm>
#include <array>

namespace sim {
namespace {

constexpr std::array names{
    "GetQuillApiFactory",
    "CreateApi",
    "Start",
    "InitiateEnrollment",
    "InitiateReEnrollment",
    "EnrollmentAuthReply",
    "CancelEnrollment",
    "InitiateUnenrollment",
    "PerformConfigSync",
    "TriggerPostureReports",
    "DataplaneAuthReply",
    "Stop",
};
static_assert(names.size() == operationCount);

} // namespace

const char* operationName(Operation operation) noexcept { return names[static_cast<std::size_t>(operation)]; }

std::optional<Operation> operationOf(std::string_view name) noexcept {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        return std::nullopt;
    }
    return static_cast<Operation>(found - names.begin());
}

} // namespace sim
