/// The text that a cached record was decoded from.
#pragma once

#include <memory>
#include <string>
#include <string_view>

/// The backend mostly repeats itself to the letter. The same text again needs neither parsing nor decoding:
/// its record is the one that is cached. The text counts only for as long as exactly that record stays
/// cached, so that a document which the machine refused, and a record that gave way to another one or to
/// none, leave nothing behind.
class KnownText {
public:
    /// Whether a text is short enough to be kept.
    static bool isKept(std::string_view document) noexcept;

    /// Whether the text is the one that `cached` was decoded from.
    bool isOf(const std::shared_ptr<const void>& cached, std::string_view document) const noexcept;

    /// Remembers the text of `cached`, unless it is null or its text is too long to be kept; forgets any
    /// other.
    void keep(const std::shared_ptr<const void>& cached, std::string_view document);
    void forget() noexcept;

private:
    std::shared_ptr<const void> record; ///< null: nothing is known
    std::string text;
};
