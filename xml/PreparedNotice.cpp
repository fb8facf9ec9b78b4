#include "xml/PreparedNotice.h"

#include "xml/XmlText.h"
#include "xml/XmlUINotice.h"

namespace {

constexpr std::string_view marks = "\x01\x02\x03\x04";

/// The first and the last position of what a mark takes away of the printed text: an attribute's value goes
/// with its quotes, a cut with its line.
struct Gap {
    std::size_t begin;
    std::size_t end;
};

Gap gapAt(std::string_view text, std::size_t mark) {
    if (text[mark] == *PreparedNotice::value) {
        return {mark - 1, mark + 2};
    }
    if (text[mark] == *PreparedNotice::text || text[mark] == *PreparedNotice::name) {
        return {mark, mark + 1};
    }
    return {text.rfind('\n', mark) + 1, text.find('\n', mark) + 1};
}

} // namespace

PreparedNotice::PreparedNotice(const XmlUINotice& notice) {
    common2::TextBuffer buffer;
    notice.print(buffer);
    const std::string_view printed = buffer.view();
    std::size_t begin = 0;
    for (std::size_t mark = printed.find_first_of(marks); mark != std::string_view::npos;
         mark = printed.find_first_of(marks, begin)) {
        const Gap gap = gapAt(printed, mark);
        pieces.emplace_back(printed.substr(begin, gap.begin - begin));
        begin = gap.end;
    }
    pieces.emplace_back(printed.substr(begin));
}

void NoticeFiller::putValue(std::string_view value) {
    pass();
    appendQuoted(text, value);
}

void NoticeFiller::putPlain(std::string_view value) {
    pass();
    text.append('"');
    text.append(value);
    text.append('"');
}

void NoticeFiller::putName(std::string_view name) {
    pass();
    text.append(name);
}

void NoticeFiller::putText(std::string_view content) {
    pass();
    appendEscaped(text, content);
}
