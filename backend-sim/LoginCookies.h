/// The cookies that prove a login.
#pragma once

#include "backend-sim/WrenSim.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sim {

/// Opens logins, issues the cookie of each and judges the cookies that come back. A login page in front of
/// the service asks here for the cookie to set. Any thread.
class LoginCookies {
public:
    /// Opens a login; a cookie that was issued for it before counts no more.
    /// @param id the enrollment's id, or the context id of the dataplane authentication request
    /// @param fixed the cookie's value; empty: a random one
    void open(WrenSimLogin kind, std::string_view id, std::string fixed);
    void close(WrenSimLogin kind, std::string_view id);
    void closeAll();

    /// Opens those logins of a kind that are not open, and closes those that are not among `ids`.
    void keep(WrenSimLogin kind, const std::vector<std::string>& ids, const std::string& fixed);

    /// The cookie that a correct login sets; none if no such login is open.
    std::optional<std::string> cookieOf(WrenSimLogin kind, std::string_view id) const;
    /// That of the login of its kind that was opened last.
    std::optional<std::string> latestCookie(WrenSimLogin kind) const;

    /// The ids of the open logins of a kind.
    std::vector<std::string> openIds(WrenSimLogin kind) const;

    /// Whether that is the cookie of an open login. An empty one is nobody's.
    bool accepts(WrenSimLogin kind, std::string_view id, std::string_view cookie) const;

private:
    struct Login {
        std::string cookie;
        std::uint64_t number;
    };
    using Logins = std::map<std::string, Login, std::less<>>;

    void add(Logins& logins, std::string_view id, std::string fixed);

    mutable std::mutex mutex;
    std::map<WrenSimLogin, Logins> byKind;
    std::uint64_t opened = 0;
};

} // namespace sim
