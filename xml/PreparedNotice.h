/// The text of a notice that is sent again and again, kept ready.
#pragma once

#include "common2/data/TextBuffer.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class XmlUINotice;

/// A notice's text, cut where it changes from one sending to the next. The tree stays the one description of
/// a notice: it is composed once, with the marks below where values will stand, printed, and cut at the
/// marks.
class PreparedNotice {
public:
    /// Marks. No text of a notice's own holds such characters.
    static constexpr const char* value = "\x01"; ///< as an attribute's whole value
    static constexpr const char* text = "\x02";  ///< as an element's whole text
    static constexpr const char* name = "\x04";  ///< as an element's name, of which each printing is a mark
    /// As the name of an element without attributes and children: a cut with nothing in its place.
    static constexpr const char* cut = "\x03";

    PreparedNotice() = default;
    explicit PreparedNotice(const XmlUINotice& notice);

    bool empty() const noexcept { return pieces.empty(); }
    /// What stands before the first mark, between the marks, and behind the last one.
    std::string_view piece(std::size_t index) const noexcept { return pieces[index]; }
    std::size_t pieceCount() const noexcept { return pieces.size(); }

private:
    std::vector<std::string> pieces;
};

/// Writes a prepared notice, front to back. There must be as many calls as the notice has marks, in their
/// order.
class NoticeFiller {
public:
    NoticeFiller(const PreparedNotice& prepared, common2::TextBuffer& out)
        : notice(prepared)
        , text(out) {}

    /// What stands before the next mark, and an attribute's value in its place. The value ends at its first
    /// NUL.
    void putValue(std::string_view value);
    /// The same with a value that needs no escaping.
    void putPlain(std::string_view value);
    /// The same with an element's name.
    void putName(std::string_view name);
    /// The same with an element's text.
    void putText(std::string_view content);
    /// What stands before the next mark, with nothing in the mark's place.
    void pass() { text.append(notice.piece(next++)); }
    /// Goes on behind that many marks, without a word.
    void skip(std::size_t marks) { next += marks; }
    /// Goes back, to write what stands between marks once more.
    void back(std::size_t marks) { next -= marks; }
    /// What stands behind the last mark.
    void finish() { pass(); }

private:
    const PreparedNotice& notice;
    common2::TextBuffer& text;
    std::size_t next = 0;
};
