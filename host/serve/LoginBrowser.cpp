#include "host/serve/LoginBrowser.h"

#include <utility>

namespace host::serve {
namespace {

constexpr unsigned ok = 200;
constexpr unsigned gone = 410;
constexpr unsigned badGateway = 502;

std::string pageOf(std::string_view title, std::string_view text) {
    return R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>)" + std::string(title) +
           R"(</title>
<style>
:root { color-scheme: light dark; font: 100%/1.5 system-ui, sans-serif; }
body { margin: 0; background: Canvas; color: CanvasText; }
main { max-width: 22rem; margin: 0 auto; padding: 1.5rem; }
h1 { margin: 0 0 .25rem; font-size: 1.5rem; line-height: 1.2; }
</style>
</head>
<body>
<main>
<h1>)" + std::string(title) +
           "</h1>\n<p>" + std::string(text) + "</p>\n</main>\n</body>\n</html>\n";
}

LoginAnswer overPage() {
    return {gone, pageOf("This login is over", "You can go back to Wren Gate."), std::nullopt};
}

LoginAnswer endPage(std::optional<LoginEnd> end) {
    const bool isGood = !end || end->hasCookie;
    return {ok,
            pageOf("You can go back", isGood ? "The login is done. Wren Gate goes on by itself."
                                             : "The login has ended without a result."),
            std::move(end)};
}

LoginAnswer lostPage() {
    return {badGateway, pageOf("This page cannot be shown", "The login leads to a place that is not here."),
            std::nullopt};
}

/// Whether an address is the final one; what a query or a fragment adds does not matter.
bool isFinal(std::string_view url, std::string_view final) {
    return !final.empty() && url.starts_with(final) &&
           (url.size() == final.size() || url[final.size()] == '?' || url[final.size()] == '#');
}

/// Takes the name and the value out of a header "Set-Cookie".
std::pair<std::string, std::string> cookieOf(std::string_view header) {
    const std::string_view pair = header.substr(0, header.find(';'));
    const std::size_t equals = pair.find('=');
    return equals == pair.npos
               ? std::pair<std::string, std::string>()
               : std::pair(std::string(pair.substr(0, equals)), std::string(pair.substr(equals + 1)));
}

} // namespace

LoginBrowser::LoginBrowser(Outside usedOutside)
    : outside(std::move(usedOutside)) {}

std::string LoginBrowser::open(const LiveBrowser& browser) {
    if (!outside("GET", browser.startUrl, {})) {
        return {};
    }
    visits.insert_or_assign(browser.number,
                            Visit{browser.startUrl, browser.finalUrl, browser.cookieName, {}, false});
    return "browser/" + std::to_string(browser.number) + "/";
}

void LoginBrowser::close(std::uint64_t number) { visits.erase(number); }

LoginAnswer LoginBrowser::answer(std::uint64_t number, std::string_view method, const std::string& body) {
    const auto found = visits.find(number);
    if (found == visits.end()) {
        return overPage();
    }
    Visit& visit = found->second;
    if (visit.hasEnded) {
        return endPage(std::nullopt);
    }
    auto page = outside(method == "POST" ? "POST" : "GET", visit.url, body);
    return page ? browse(visit, std::move(*page)) : lostPage();
}

LoginAnswer LoginBrowser::browse(Visit& visit, OutsidePage page) const {
    constexpr int mostSteps = 10;
    for (int step = 0; step < mostSteps; ++step) {
        if (!page.setCookie.empty()) {
            auto [name, value] = cookieOf(page.setCookie);
            visit.cookies.insert_or_assign(std::move(name), std::move(value));
        }
        if (page.location.empty()) {
            return {page.status, std::move(page.html), std::nullopt};
        }
        if (isFinal(page.location, visit.finalUrl)) {
            visit.hasEnded = true;
            const auto cookie = visit.cookies.find(visit.cookieName);
            const bool hasCookie = cookie != visit.cookies.end();
            return endPage(
                LoginEnd{hasCookie, hasCookie ? cookie->second
                                              : "the login has set no cookie \"" + visit.cookieName + "\""});
        }
        auto next = outside("GET", page.location, {});
        if (!next) {
            return lostPage();
        }
        visit.url = std::exchange(page.location, {});
        page = std::move(*next);
    }
    return lostPage();
}

} // namespace host::serve
