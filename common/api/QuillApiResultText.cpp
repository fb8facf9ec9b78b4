#include "common/api/QuillApiResultText.h"

#include <array>
#include <string>

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

constexpr std::size_t loggedResultNames = static_cast<std::size_t>(QuillApiResult::InvalidState) + 1;

} // namespace

std::string_view quillApiResultName(QuillApiResult result) noexcept {
    const auto value = static_cast<std::size_t>(result);
    return value < loggedResultNames ? resultNames[value] : std::string_view();
}

const char* GlobalErrorCategory::name() const noexcept { return "global_error"; }

std::string GlobalErrorCategory::message(int value) const {
    const auto index = static_cast<unsigned>(value);
    return index < resultNames.size() ? std::string(resultNames[index])
                                      : "unknown_error_" + std::to_string(index);
}

const std::error_category& globalErrorCategory() noexcept {
    static const GlobalErrorCategory category;
    return category;
}

std::error_code makeGlobalError(QuillApiResult result) noexcept {
    return {static_cast<int>(result), globalErrorCategory()};
}
