/// The words for `QuillApiResult` values: two lookups that stay apart.
#pragma once

#include "wren/QuillApi.h"

#include <string_view>
#include <system_error>

/// The name of a result as failed calls are logged with it. Knows values 0 to 8; any other yields an empty
/// text, so that such a line ends with its prefix.
std::string_view quillApiResultName(QuillApiResult result) noexcept;

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
