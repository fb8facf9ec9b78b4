/// The word for a `QuillApiResult` in the log.
#pragma once

#include "wren/QuillApi.h"

#include <string_view>

/// The name of a result as failed calls are logged with it. Knows values 0 to 8, fewer than the category
/// "global_error"; any other yields an empty text, so that such a line ends with its prefix.
std::string_view quillApiResultName(QuillApiResult result) noexcept;
