#include "presentation-plugin/KnownText.h"

namespace {

constexpr std::size_t mostKept = 256 * 1024; ///< bytes

} // namespace

bool KnownText::isKept(std::string_view document) noexcept { return document.size() <= mostKept; }

bool KnownText::isOf(const std::shared_ptr<const void>& cached, std::string_view document) const noexcept {
    return record && record == cached && text == document;
}

void KnownText::keep(const std::shared_ptr<const void>& cached, std::string_view document) {
    forget();
    if (cached && isKept(document)) {
        text = document;
        record = cached;
    }
}

void KnownText::forget() noexcept {
    record.reset();
    text.clear();
}
