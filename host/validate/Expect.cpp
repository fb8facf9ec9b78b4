#include "host/validate/Expect.h"

#include <algorithm>

namespace host::validate {
namespace {

std::string quoted(std::string_view text) { return joined({"\"", text, "\""}); }

[[noreturn]] void differ(std::string_view what, std::string_view seen, std::string_view wanted) {
    throw CheckFailure(joined({what, ": ", seen, ", not ", wanted}));
}

} // namespace

std::string lineAt(const Lines& lines, std::size_t index) {
    return index < lines.size() ? lines[index] : std::string("missing");
}

Lines linesFrom(const Lines& lines, std::size_t index, std::size_t count) {
    Lines part;
    for (; index < lines.size() && count > 0; ++index, --count) {
        part.push_back(lines[index]);
    }
    return part;
}

std::string joined(std::initializer_list<std::string_view> words) {
    std::string text;
    for (const std::string_view word : words) {
        text += word;
    }
    return text;
}

void expect(bool isAsItShouldBe, std::string_view wrong) {
    if (!isAsItShouldBe) {
        throw CheckFailure(std::string(wrong));
    }
}

void expectEqual(std::string_view what, std::int64_t seen, std::int64_t wanted) {
    if (seen != wanted) {
        differ(what, std::to_string(seen), std::to_string(wanted));
    }
}

void expectEqual(std::string_view what, std::string_view seen, std::string_view wanted) {
    if (seen != wanted) {
        differ(what, quoted(seen), quoted(wanted));
    }
}

void expectEqual(std::string_view what, const Lines& seen, const Lines& wanted) {
    const auto [atSeen, atWanted] = std::mismatch(seen.begin(), seen.end(), wanted.begin(), wanted.end());
    if (atSeen != seen.end() || atWanted != wanted.end()) {
        const auto index = static_cast<std::size_t>(atSeen - seen.begin());
        differ(joined({what, ", ", std::to_string(index + 1), ". of ", std::to_string(wanted.size())}),
               lineAt(seen, index), index < wanted.size() ? wanted[index] : "one more");
    }
}

void expectContains(std::string_view what, const Lines& seen, std::string_view wanted) {
    if (std::find(seen.begin(), seen.end(), wanted) == seen.end()) {
        throw CheckFailure(joined({what, ": no ", quoted(wanted)}));
    }
}

} // namespace host::validate
