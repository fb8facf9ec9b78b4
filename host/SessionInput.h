/// The input lines of session files.
#pragma once

#include <boost/json/object.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace host {

/// What an input line asks for.
enum class InputKind {
    Session,
    Interfaces,
    Create,
    Supports,
    Register,
    Start,
    Stop,
    Unregister,
    Dispose,
    Get,
    Inert,
    Event,
    Deliver,
    BackendResult,
    BackendNullApi,
    BackendFactoryExpired,
    BackendReset,
};

/// The object that a line is about where it names none.
inline constexpr std::string_view defaultObject = "p";

/// One input line: its keys are known, complete and of the right kind.
class SessionInput {
public:
    /// Reads a line that holds "do".
    /// @param line number in the file, from 1
    /// @throws HostError that tells what is wrong, without naming file and line
    SessionInput(const boost::json::object& fields, unsigned line);

    InputKind kind() const noexcept { return ownKind; }
    unsigned line() const noexcept { return ownLine; }

    bool has(std::string_view key) const { return find(key) != nullptr; }
    bool isNull(std::string_view key) const;
    /// The value of a key that the line holds.
    const std::string& text(std::string_view key) const;
    bool flag(std::string_view key) const;
    std::uint64_t count(std::string_view key) const;
    std::int32_t number(std::string_view key) const;
    /// The value of a key that may be left out.
    bool flag(std::string_view key, bool leftOut) const { return has(key) ? flag(key) : leftOut; }
    std::uint64_t count(std::string_view key, std::uint64_t leftOut) const {
        return has(key) ? count(key) : leftOut;
    }
    /// The text as C calls take it: null for null.
    const char* pointer(std::string_view key) const { return isNull(key) ? nullptr : text(key).c_str(); }
    /// Name of the object that the line is about.
    std::string object() const { return has("object") ? text("object") : std::string(defaultObject); }

    /// The line in its one form: compact, keys in the documented order, nothing that was left out.
    std::string json() const;

private:
    using Value = std::variant<std::nullptr_t, bool, std::uint64_t, std::int32_t, std::string>;

    const Value* find(std::string_view key) const;

    InputKind ownKind;
    unsigned ownLine;
    std::string_view word; ///< of "do"
    std::vector<std::pair<std::string_view, Value>> values;
};

} // namespace host
