#include "host/serve/LoginBrowser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using host::serve::LiveBrowser;
using host::serve::LoginAnswer;
using host::serve::OutsidePage;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class LoginBrowser : public ::testing::Test {
protected:
    static LiveBrowser login(std::uint64_t number, const char* start = "http://a/start") {
        LiveBrowser browser;
        browser.number = number;
        browser.startUrl = start;
        browser.finalUrl = "http://a/end";
        browser.cookieName = "session";
        return browser;
    }
    LoginAnswer post() { return browser.answer(7, "POST", "form"); }
    static std::string endOf(const LoginAnswer& answer) {
        return answer.end ? (answer.end->hasCookie ? "cookie " : "error ") + answer.end->text : "none";
    }

    std::map<std::string, OutsidePage> pages{{"GET http://a/start", {200, "", "", "a form"}}};
    std::vector<std::string> asked;
    host::serve::LoginBrowser browser{[this](const char* method, const std::string& url,
                                             const std::string& body) -> std::optional<OutsidePage> {
        const std::string name = std::string(method) + " " + url;
        asked.push_back(name + (body.empty() ? "" : " " + body));
        const auto page = pages.find(name);
        return page == pages.end() ? std::nullopt : std::optional(page->second);
    }};
};

TEST_F(LoginBrowser, ShowsTheStartPage) {
    EXPECT_EQ(browser.open(login(7)), "browser/7/");
    const LoginAnswer answer = browser.answer(7, "GET", "");
    EXPECT_EQ(answer.status, 200u);
    EXPECT_EQ(answer.html, "a form");
    EXPECT_EQ(endOf(answer), "none");
}

TEST_F(LoginBrowser, PageThatIsNotToBeHadHasNoAddress) {
    EXPECT_EQ(browser.open(login(7, "http://elsewhere/")), "");
    EXPECT_EQ(browser.answer(7, "GET", "").status, 410u);
}

TEST_F(LoginBrowser, SendsTheFormToTheSamePage) {
    pages["POST http://a/start"] = {401, "", "", "again"};
    browser.open(login(7));
    EXPECT_EQ(post().html, "again");
    EXPECT_EQ(post().status, 401u);
    EXPECT_EQ(asked.back(), "POST http://a/start form");
}

TEST_F(LoginBrowser, ReportsTheCookieAtTheFinalAddressOnce) {
    pages["POST http://a/start"] = {303, "http://a/end", "session=secret=1; Path=/; Secure", ""};
    browser.open(login(7));
    const LoginAnswer answer = post();
    EXPECT_EQ(endOf(answer), "cookie secret=1");
    EXPECT_EQ(answer.status, 200u);
    EXPECT_THAT(answer.html, HasSubstr("You can go back"));
    EXPECT_EQ(endOf(post()), "none");
    EXPECT_THAT(browser.answer(7, "GET", "").html, HasSubstr("You can go back"));
}

TEST_F(LoginBrowser, ReportsAnErrorWhereTheCookieIsMissing) {
    for (const char* header : {"", "other=1", "session", "Session=1"}) {
        pages["POST http://a/start"] = {303, "http://a/end", header, ""};
        browser.open(login(7));
        EXPECT_EQ(endOf(post()), R"(error the login has set no cookie "session")") << header;
    }
}

TEST_F(LoginBrowser, FollowsWhereItIsLedAndKeepsTheCookies) {
    pages["POST http://a/start"] = {303, "http://b/1", "session=first", ""};
    pages["GET http://b/1"] = {302, "http://b/2", "session=second", ""};
    pages["GET http://b/2"] = {200, "", "", "one more question"};
    pages["POST http://b/2"] = {303, "http://a/end?x=1", "other=3", ""};
    browser.open(login(7));
    EXPECT_EQ(post().html, "one more question");
    EXPECT_EQ(endOf(post()), "cookie second");
    EXPECT_THAT(asked, ElementsAre("GET http://a/start", "POST http://a/start form", "GET http://b/1",
                                   "GET http://b/2", "POST http://b/2 form"));
}

TEST_F(LoginBrowser, FinalAddressMayHaveAQueryAndAFragmentBehindIt) {
    const std::pair<const char*, bool> rows[] = {
        {"http://a/end", true},     {"http://a/end?a=b", true},   {"http://a/end#x", true},
        {"http://a/ending", false}, {"http://a/end/more", false}, {"http://a/en", false},
        {"http://A/end", false},
    };
    for (const auto& [location, isEnd] : rows) {
        pages["POST http://a/start"] = {303, location, "session=s", ""};
        browser.open(login(7));
        const LoginAnswer answer = post();
        EXPECT_EQ(answer.end.has_value(), isEnd) << location;
        EXPECT_EQ(answer.status, isEnd ? 200u : 502u) << location;
    }
}

TEST_F(LoginBrowser, GoesRoundInNoCircle) {
    pages["POST http://a/start"] = {303, "http://a/start", "", ""};
    pages["GET http://b/1"] = {302, "http://b/1", "", ""};
    browser.open(login(7));
    EXPECT_EQ(post().html, "a form");
    pages["POST http://a/start"].location = "http://b/1";
    EXPECT_EQ(post().status, 502u);
}

TEST_F(LoginBrowser, EveryLoginHasAJarOfItsOwn) {
    pages["POST http://a/start"] = {303, "http://a/end", "session=s", ""};
    browser.open(login(7));
    browser.open(login(8));
    EXPECT_EQ(endOf(browser.answer(8, "POST", "")), "cookie s");
    pages["POST http://a/start"].setCookie = "";
    EXPECT_EQ(endOf(post()), R"(error the login has set no cookie "session")");
}

TEST_F(LoginBrowser, ClosedLoginIsOver) {
    browser.open(login(7));
    browser.close(7);
    browser.close(8);
    EXPECT_EQ(browser.answer(7, "GET", "").status, 410u);
}

} // namespace
