/// The operations of the library by name.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace sim {

enum class Operation : std::size_t {
    GetQuillApiFactory,
    CreateApi,
    Start,
    InitiateEnrollment,
    InitiateReEnrollment,
    EnrollmentAuthReply,
    CancelEnrollment,
    InitiateUnenrollment,
    PerformConfigSync,
    TriggerPostureReports,
    DataplaneAuthReply,
    Stop,
};
inline constexpr std::size_t operationCount = 12;

/// NUL-terminated, in static storage.
const char* operationName(Operation operation) noexcept;

/// The operation of that name, matched exactly.
std::optional<Operation> operationOf(std::string_view name) noexcept;

} // namespace sim
