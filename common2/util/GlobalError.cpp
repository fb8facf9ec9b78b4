#include "common2/util/GlobalError.h"

#include <array>

namespace {

constexpr std::array<std::string_view, 30> resultNames{
    "Success",
    "BadParameter",
    "Unexpected",
    "NullPointer",
    "InsufficientBuffer",
    "NotImplemented",
    "NotInitialized",
    "NotFound",
    "InvalidState",
    "NotSupported",
    "ResourceInUse",
    "Canceled",
    "Exception",
    "BadResponse",
    "BadFormat",
    "AllocFailed",
    "NotConnected",
    "RequestFailed",
    "RequestTimedOut",
    "AuthRequestTimedOut",
    "ApprovalRequired",
    "RebootRequired",
    "CodeSignCheckFailed",
    "LoadFailed",
    "ConnectionTerminating",
    "ExpiredPointer",
    "ResourceUnavailable",
    "Duplicate",
    "Eof",
    "BadHandle",
};
static_assert(resultNames.size() == static_cast<std::size_t>(QuillApiResult::BadHandle) + 1);

} // namespace

const char* GlobalErrorCategory::name() const noexcept { return "global_error"; }

std::string GlobalErrorCategory::message(int value) const {
    const auto number = static_cast<std::uint32_t>(value);
    const std::string_view name = globalResultName(number);
    return name.empty() ? "unknown_error_" + std::to_string(number) : std::string(name);
}

const std::error_category& globalErrorCategory() noexcept {
    static const GlobalErrorCategory category;
    return category;
}

std::error_code makeGlobalError(QuillApiResult result) noexcept {
    return {static_cast<int>(result), globalErrorCategory()};
}

std::string_view globalResultName(std::uint32_t value) noexcept {
    return value < resultNames.size() ? resultNames[value] : std::string_view();
}
