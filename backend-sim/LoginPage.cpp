#include "backend-sim/LoginPage.h"

#include "backend-sim/Documents.h"

#include <algorithm>
#include <cstddef>

namespace sim {
namespace {

constexpr std::string_view head = R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>Log in</title>
<style>
:root { color-scheme: light dark; font: 100%/1.5 system-ui, sans-serif; }
body { margin: 0; background: Canvas; color: CanvasText; }
main { max-width: 22rem; margin: 0 auto; padding: 1.5rem; }
h1 { margin: 0 0 .25rem; font-size: 1.5rem; line-height: 1.2; }
p { margin: 0 0 1rem; }
label { display: block; margin-top: 1rem; font-weight: 600; }
input { box-sizing: border-box; width: 100%; padding: .5rem; font: inherit; }
button { margin-top: 1.5rem; padding: .5rem 1.5rem; font: inherit; cursor: pointer; }
input:focus-visible, button:focus-visible { outline: 3px solid Highlight; outline-offset: 2px; }
.hint { margin: .25rem 0 0; }
.error { padding: .5rem .75rem; border: 2px solid currentColor; font-weight: 600; }
</style>
</head>
<body>
<main>
)";
constexpr std::string_view foot = "</main>\n</body>\n</html>\n";

constexpr std::uint32_t ok = 200;
constexpr std::uint32_t seeOther = 303;
constexpr std::uint32_t methodNotAllowed = 405;
constexpr std::uint32_t gone = 410;

std::string inMarkup(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

int digitOf(char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t place = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
    return place == digits.npos ? -1 : static_cast<int>(place);
}

/// A part of a form as it was typed. What is no escape stays as it is.
std::string decoded(std::string_view part) {
    std::string text;
    for (std::size_t i = 0; i < part.size(); ++i) {
        const bool isEscape =
            part[i] == '%' && i + 2 < part.size() && digitOf(part[i + 1]) >= 0 && digitOf(part[i + 2]) >= 0;
        if (isEscape) {
            text += static_cast<char>(digitOf(part[i + 1]) * 16 + digitOf(part[i + 2]));
            i += 2;
        } else {
            text += part[i] == '+' ? ' ' : part[i];
        }
    }
    return text;
}

/// The field of that name; empty if the form has none.
std::string fieldOf(std::string_view form, std::string_view name) {
    while (!form.empty()) {
        const std::string_view field = form.substr(0, form.find('&'));
        form.remove_prefix(std::min(form.size(), field.size() + 1));
        const std::size_t equals = std::min(field.find('='), field.size());
        if (decoded(field.substr(0, equals)) == name) {
            return decoded(field.substr(std::min(field.size(), equals + 1)));
        }
    }
    return {};
}

LoginPage pageOf(std::uint32_t status, const std::string& content) {
    return {status, {}, {}, std::string(head) + content + std::string(foot)};
}

/// A login that is open.
struct OpenLogin {
    const Login& settings;
    std::string purpose;
    std::string cookie;
};

LoginPage formPage(std::uint32_t status, const OpenLogin& login, std::string_view user,
                   std::string_view error) {
    const bool isWrong = !error.empty();
    const std::string mark =
        isWrong ? R"( aria-invalid="true" aria-describedby="error hint")" : R"( aria-describedby="hint")";
    return pageOf(
        status,
        "<h1>Log in</h1>\n<p>" + login.purpose + "</p>\n" +
            (isWrong ? R"(<p class="error" id="error" role="alert">)" + std::string(error) + "</p>\n" : "") +
            R"(<form method="post">
<label for="user">User name</label>
<input id="user" name="user" autocomplete="username" autocapitalize="none" spellcheck="false" required value=")" +
            inMarkup(user) + R"(">
<label for="password">Password</label>
<input id="password" name="password" type="password" autocomplete="current-password" required)" +
            mark + R"(>
<p class="hint" id="hint">This is a stand-in for a real login: any user name will do, and the password is <kbd>)" +
            inMarkup(login.settings.password) + R"(</kbd>.</p>
<button>Log in</button>
</form>
)");
}

LoginPage judge(const OpenLogin& login, std::string_view form) {
    const std::string user = fieldOf(form, "user");
    if (user.find_first_not_of(' ') == std::string::npos) {
        return formPage(ok, login, user, "Please enter your user name.");
    }
    if (fieldOf(form, "password") != login.settings.password) {
        return formPage(ok, login, user, "That password is wrong. Please try again.");
    }
    LoginPage page = pageOf(seeOther, "<h1>Logged in</h1>\n");
    page.location = login.settings.endUrl;
    page.setCookie = login.settings.cookieName + "=" + login.cookie + "; Path=/; Secure; HttpOnly";
    return page;
}

LoginPage answer(const LoginPageRequest& request, const OpenLogin& login) {
    if (request.method == "GET" || request.method == "HEAD") {
        return formPage(ok, login, {}, {});
    }
    if (request.method == "POST") {
        return judge(login, request.body);
    }
    return pageOf(methodNotAllowed, "<h1>That is not possible here</h1>\n");
}

} // namespace

std::optional<LoginPage> answerLogin(const LoginPageRequest& request, const Logins& logins,
                                     const LoginCookies& cookies) {
    struct Kind {
        WrenSimLogin kind;
        const Login& settings;
        const char* purpose;
    };
    const Kind kinds[] = {
        {wrensim_enrollment_login, logins.enrollment, "to enroll this device"},
        {wrensim_dataplane_login, logins.dataplane, "to get access to a protected destination"},
    };
    for (const Kind& kind : kinds) {
        for (const std::string& id : cookies.openIds(kind.kind)) {
            const auto cookie = cookies.cookieOf(kind.kind, id);
            if (cookie && request.url == loginUrl(kind.settings, id)) {
                return answer(request, {kind.settings, kind.purpose, *cookie});
            }
        }
    }
    for (const Kind& kind : kinds) {
        if (request.url.starts_with(loginUrl(kind.settings, ""))) {
            return pageOf(gone, "<h1>This login is over</h1>\n<p>You can close this window.</p>\n");
        }
    }
    return std::nullopt;
}

} // namespace sim
