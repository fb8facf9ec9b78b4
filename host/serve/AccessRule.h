/// Who may ask the server for what.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host::serve {

/// What a request says about where it comes from and where it wants to go.
struct AccessClaim {
    std::string_view target;                ///< as in the request's first line
    std::optional<std::string_view> host;   ///< the one header of that name; none: it is missing or doubled
    std::optional<std::string_view> origin; ///< none: it is missing; empty: doubled
    bool wantsSocket = false;
};

/// Lets pass those who know the token and come from a page of ours. Immutable.
class AccessRule {
public:
    /// @param token stands in every path
    /// @param port on which the server listens
    AccessRule(std::string token, unsigned short port);

    /// @return the path below the token, without a query; nothing where the request is to be refused
    std::optional<std::string_view> admit(const AccessClaim& claim) const;

    /// The path that everything stands below, as "/TOKEN/".
    std::string root() const { return "/" + token + "/"; }

private:
    const std::string token;
    const std::string hosts[2]; ///< as they may be named
};

/// 128 random bits as hexadecimal digits.
std::string randomToken();

} // namespace host::serve
