#include "common/api/QuillApiResultText.h"

#include "common2/util/GlobalError.h"

std::string_view quillApiResultName(QuillApiResult result) noexcept {
    return result <= QuillApiResult::InvalidState ? globalResultName(static_cast<std::uint32_t>(result))
                                                  : std::string_view();
}
