/// Error codes that carry a `QuillApiResult`.
#pragma once

#include "wren/QuillApi.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

/// The category "global_error" of error codes: all thirty results by name, "unknown_error_" and the value in
/// decimal beyond. Value 0 means no error.
class GlobalErrorCategory : public std::error_category {
public:
    const char* name() const noexcept override;
    std::string message(int value) const override;
};

/// The one object of the category.
const std::error_category& globalErrorCategory() noexcept;

/// A result as an error code of "global_error".
std::error_code makeGlobalError(QuillApiResult result) noexcept;

/// The name of one of the thirty results; empty for any other value.
std::string_view globalResultName(std::uint32_t value) noexcept;
