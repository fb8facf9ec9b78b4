#include "host/LogLine.h"

#include <charconv>
#include <cstddef>
#include <optional>

namespace host {
namespace {

constexpr std::string_view marks = "TIWE";

int severityOf(char mark) noexcept {
    const std::size_t found = marks.find(mark);
    return found == std::string_view::npos ? unknownSeverity : static_cast<int>(found);
}

/// Takes off what stands before `separator`, and the separator itself; nothing if it does not occur.
std::optional<std::string_view> takeUntil(std::string_view& rest, std::string_view separator) {
    const std::size_t end = rest.find(separator);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(end + separator.size());
    return taken;
}

/// Takes off "File:Line ". A colon may stand in the file's name: the line number's is the first that is
/// followed by digits alone, or none, and a blank.
bool takePlace(std::string_view& rest, LogRecord& record) {
    for (std::size_t colon = rest.find(':'); colon != std::string_view::npos;
         colon = rest.find(':', colon + 1)) {
        const std::string_view behind = rest.substr(colon + 1);
        const std::size_t digits = behind.find_first_not_of("0123456789");
        if (digits == std::string_view::npos || behind[digits] != ' ') {
            continue;
        }
        std::from_chars(behind.data(), behind.data() + digits, record.line);
        record.file = rest.substr(0, colon);
        rest.remove_prefix(colon + 1 + digits + 1);
        return true;
    }
    return false;
}

} // namespace

LogRecord parseLogLine(std::string_view text) {
    LogRecord record;
    std::string_view rest = text;
    const bool hasHead = takeUntil(rest, "[") && takeUntil(rest, ", ") && takeUntil(rest, "] ");
    const auto mark = hasHead ? takeUntil(rest, "/ ") : std::nullopt;
    if (mark && mark->size() <= 1 && takePlace(rest, record)) {
        if (const auto function = takeUntil(rest, "() ")) {
            record.severity = mark->empty() ? unknownSeverity : severityOf(mark->front());
            record.function = *function;
            record.message = rest;
            return record;
        }
    }
    return {unknownSeverity, {}, {}, 0, std::string(text)};
}

} // namespace host
