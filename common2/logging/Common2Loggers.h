/// Log statements.
///
///     COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::Stop") << "Unexpected state transition";
///
/// A statement that no filter can let pass costs one comparison: its message is not built, its operands are
/// not evaluated. Any thread may log. A statement never throws and never fails visibly.
#pragma once

#include <atomic>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

/// How serious a log record is. The names are those of the configuration file.
enum Common2LogSeverity : int { DBG_TRACE = 0, DBG_INFO = 1, DBG_WARN = 2, DBG_ERROR = 3 };

/// One log record at `severity` (a Common2LogSeverity) that names `function`, the qualified name of the
/// operation that logs; the message is streamed behind it: texts, characters and integers.
#define COMMON2_LOG(severity, function)                                                                      \
    COMMON2_LOG_AT(severity, ::common2::sourceName(__FILE__), __LINE__, function)

/// The same with `file` and `line` given.
#define COMMON2_LOG_AT(severity, file, line, function)                                                       \
    if (!::common2::logMayPass(severity)) {                                                                  \
    } else if (::common2::LogStatement common2Statement{severity, file, line, function};                     \
               !common2Statement.isOpen()) {                                                                 \
    } else                                                                                                   \
        common2Statement

namespace common2 {

/// The lowest severity that the installed filter could let pass: what lies below needs no closer look.
inline std::atomic<int> lowestLoggedSeverity{DBG_TRACE};

/// Whether a record of that severity has any chance.
inline bool logMayPass(int severity) noexcept {
    return severity >= lowestLoggedSeverity.load(std::memory_order_relaxed);
}

/// What the "File" attribute holds of a source path: the part behind its last backslash.
constexpr std::string_view logFileName(std::string_view path) noexcept {
    return path.substr(path.rfind('\\') + 1);
}

/// The name by which a source file logs: its own name without folders and ending, the same wherever and by
/// whatever compiler it is built.
constexpr std::string_view nameOfSource(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
    return name.substr(0, name.rfind('.'));
}
/// The same of a path that is known when the program is compiled.
consteval std::string_view sourceName(std::string_view path) { return nameOfSource(path); }

/// One record being written: opened by the constructor, if the filter lets it pass, and handed to the log
/// core by the destructor. Use the macros above.
class LogStatement {
public:
    LogStatement(int severity, std::string_view file, int line, std::string_view function) noexcept;
    LogStatement(const LogStatement&) = delete;
    LogStatement& operator=(const LogStatement&) = delete;
    ~LogStatement();

    bool isOpen() const noexcept { return open; }

    LogStatement& operator<<(std::string_view text) noexcept;
    LogStatement& operator<<(char character) noexcept { return *this << std::string_view(&character, 1); }
    /// In decimal.
    template <std::integral Number>
    LogStatement& operator<<(Number number) noexcept {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

private:
    alignas(void*) std::byte record[sizeof(void*)]; ///< the log library's record, while open
    std::string message;
    bool open = false;
};

} // namespace common2
