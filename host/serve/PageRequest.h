/// What a page asks for.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace host::serve {

enum class RequestKind {
    Press,
    Close,
    BrowseError,
    Cookie,
    PageEvent,
    Event,
    Lifecycle,
    Service,
    Scenario,
    Pace,
    Fail,
    Heal,
    Slow,
    Deliver,
    ClearHistory,
};

/// Tells what is wrong with a request.
class RequestFault : public std::runtime_error {
public:
    RequestFault(std::optional<std::uint64_t> request, const std::string& what)
        : std::runtime_error(what)
        , id(request) {}

    std::optional<std::uint64_t> id; ///< of the request, where it can be read
};

/// A request that is one: its keys are known, complete and of the right kind.
class PageRequest {
public:
    /// Reads the text of a message.
    /// @throws RequestFault
    explicit PageRequest(std::string_view message);

    std::uint64_t id() const noexcept { return ownId; }
    RequestKind kind() const noexcept { return ownKind; }

    /// The value of a key that the request must hold.
    const std::string& text(std::string_view key) const;
    std::uint64_t number(std::string_view key) const;
    /// The value of a key that it may leave out.
    std::string text(std::string_view key, std::string_view leftOut) const;
    std::uint64_t number(std::string_view key, std::uint64_t leftOut) const;

private:
    using Value = std::variant<std::string, std::uint64_t>;

    std::uint64_t ownId = 0;
    RequestKind ownKind = RequestKind::Event;
    std::map<std::string, Value, std::less<>> values;
};

} // namespace host::serve
