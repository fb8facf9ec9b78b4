/// The page on which a user logs in.
#pragma once

#include "backend-sim/LoginCookies.h"
#include "backend-sim/Scenario.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// What a browser asks for.
struct LoginPageRequest {
    std::string_view method; ///< of HTTP
    std::string_view url;    ///< the whole address
    std::string_view body;   ///< of a form, URL-encoded
};

/// What it gets.
struct LoginPage {
    std::uint32_t status = 0; ///< of HTTP
    std::string location;     ///< where to go on; empty: nowhere
    std::string setCookie;    ///< the header of that name; empty: none
    std::string html;
};

/// Answers for the address of any login, open or over; nothing for any other address.
std::optional<LoginPage> answerLogin(const LoginPageRequest& request, const Logins& logins,
                                     const LoginCookies& cookies);

} // namespace sim
