#include "common2/data/TextBuffer.h"

#include <algorithm>
#include <utility>

namespace common2 {

const char* TextBuffer::c_str() {
    *room(1) = '\0';
    return storage.get();
}

void TextBuffer::reset(std::size_t mostKept) noexcept {
    if (capacity() > mostKept) {
        storage.reset();
        limit = nullptr;
    }
    clear();
}

void TextBuffer::grow(std::size_t characters) {
    const std::size_t used = size();
    const std::size_t wanted = std::max(used + characters, 2 * capacity());
    auto larger = std::make_unique_for_overwrite<char[]>(wanted);
    if (used > 0) {
        std::memcpy(larger.get(), storage.get(), used);
    }
    storage = std::move(larger);
    end = storage.get() + used;
    limit = storage.get() + wanted;
}

} // namespace common2
