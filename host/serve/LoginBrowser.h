/// The browser in which users log in, as far as the server is it.
#pragma once

#include "host/serve/LiveScreen.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace host::serve {

/// A page of the world outside.
struct OutsidePage {
    unsigned status = 0;   ///< of HTTP
    std::string location;  ///< where to go on; empty: nowhere
    std::string setCookie; ///< the header of that name; empty: none
    std::string html;
};

/// Fetches a page; nothing where its address is not to be had.
using Outside = std::function<std::optional<OutsidePage>(const char* method, const std::string& url,
                                                         const std::string& body)>;

/// How a login has ended.
struct LoginEnd {
    bool hasCookie = false;
    std::string text; ///< the cookie's value, or what went wrong
};

/// What the frame of a login gets.
struct LoginAnswer {
    unsigned status = 0;         ///< of HTTP
    std::string html;            ///< may hold styles and forms
    std::optional<LoginEnd> end; ///< the login has ended by this, which the plugin has to be told
};

/// Shows login pages in frames under addresses of the server: it fetches each page, follows where it leads,
/// keeps the cookies, and knows the end when it comes. Not for several threads at once.
class LoginBrowser {
public:
    explicit LoginBrowser(Outside usedOutside);

    /// A popup wants a login. @return the frame's address; empty where its page is not to be had
    std::string open(const LiveBrowser& browser);
    /// The popup is gone, or shows something else.
    void close(std::uint64_t number);

    /// Answers the frame of that number.
    /// @param method "GET", "HEAD" or "POST"
    LoginAnswer answer(std::uint64_t number, std::string_view method, const std::string& body);

private:
    struct Visit {
        std::string url; ///< of the page that is shown
        std::string finalUrl;
        std::string cookieName;
        std::map<std::string, std::string, std::less<>> cookies;
        bool hasEnded = false;
    };

    LoginAnswer browse(Visit& visit, OutsidePage page) const;

    Outside outside;
    std::map<std::uint64_t, Visit> visits;
};

} // namespace host::serve
