/// A growing text whose storage is kept between uses.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace common2 {

/// A text that is written from front to back and handed to code that takes a C string. Unlike a string it can
/// be written in place, it never fills storage before it is written, and it is emptied without giving its
/// storage away. Belongs to one thread at a time.
class TextBuffer {
public:
    std::string_view view() const noexcept { return {storage.get(), size()}; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(end - storage.get()); }
    std::size_t capacity() const noexcept { return static_cast<std::size_t>(limit - storage.get()); }
    bool empty() const noexcept { return end == storage.get(); }
    /// The text with a NUL behind it, until the next change.
    const char* c_str();

    /// Room for that many characters behind the text; `endAt` makes those written part of it.
    char* room(std::size_t characters) {
        if (static_cast<std::size_t>(limit - end) < characters) {
            grow(characters);
        }
        return end;
    }
    void endAt(char* newEnd) noexcept { end = newEnd; }

    // Here and not in the source: a notice is made of some hundred pieces.
    void append(std::string_view text) {
        if (!text.empty()) {
            std::memcpy(room(text.size()), text.data(), text.size());
            end += text.size();
        }
    }
    void append(char character) {
        *room(1) = character;
        ++end;
    }

    /// Empties the text.
    void clear() noexcept { end = storage.get(); }
    /// Empties the text, and gives storage above `mostKept` characters back, so that one huge text does not
    /// stay for ever.
    void reset(std::size_t mostKept) noexcept;

private:
    void grow(std::size_t characters);

    std::unique_ptr<char[]> storage;
    char* end = nullptr;   ///< behind the text
    char* limit = nullptr; ///< behind the storage
};

} // namespace common2
