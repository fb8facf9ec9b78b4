#include "tests/backend-sim/ServiceTest.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Page {
    unsigned status = 0; ///< 0: there is no page
    std::string location = "none";
    std::string cookie = "none";
    std::string html;
};

Page ask(const char* method, const std::string& url, const char* body = nullptr) {
    Page page;
    const auto receive = [](void* context, std::uint32_t status, const char* location, const char* cookie,
                            const char* html) {
        *static_cast<Page*>(context) = {status, location != nullptr ? location : "none",
                                        cookie != nullptr ? cookie : "none", html};
    };
    const bool isKnown = wrensim_login_page(method, url.c_str(), body, receive, &page);
    EXPECT_EQ(isKnown, page.status != 0);
    return page;
}

class LoginPage : public test::ServiceTest {
protected:
    const std::string id = atLogin();
    const std::string url = "https://login.example.test/enroll?login=" + id;
};

TEST_F(LoginPage, IsAFormThatTellsItsPassword) {
    const Page page = ask("GET", url);
    EXPECT_EQ(page.status, 200u);
    EXPECT_EQ(page.location, "none");
    EXPECT_EQ(page.cookie, "none");
    EXPECT_THAT(page.html, HasSubstr(R"(<form method="post">)"));
    EXPECT_THAT(page.html, HasSubstr(R"(<label for="user">)"));
    EXPECT_THAT(page.html, HasSubstr(R"(name="user")"));
    EXPECT_THAT(page.html, HasSubstr(R"(<label for="password">)"));
    EXPECT_THAT(page.html, HasSubstr(R"(name="password" type="password")"));
    EXPECT_THAT(page.html, HasSubstr("the password is <kbd>wren</kbd>"));
    EXPECT_THAT(page.html, HasSubstr("to enroll this device"));
    EXPECT_THAT(page.html, Not(HasSubstr("role=\"alert\"")));
    EXPECT_THAT(page.html, Not(HasSubstr("<script")));
    EXPECT_EQ(ask("HEAD", url).status, 200u);
}

TEST_F(LoginPage, RightPasswordSetsTheCookieAndLeadsToTheEnd) {
    const Page page = ask("POST", url, "user=robin&password=wren");
    EXPECT_EQ(page.status, 303u);
    EXPECT_EQ(page.location, "https://login.example.test/enroll/done");
    EXPECT_EQ(page.cookie, "session=" + enrollmentCookie(id) + "; Path=/; Secure; HttpOnly");
}

TEST_F(LoginPage, WrongPasswordIsAskedForAgain) {
    for (const char* form : {"user=robin&password=Wren", "user=robin&password=", "user=robin",
                             "user=robin&password=wren%20", "user=robin&password=wren%0"}) {
        const Page page = ask("POST", url, form);
        EXPECT_EQ(page.status, 200u) << form;
        EXPECT_EQ(page.location, "none");
        EXPECT_EQ(page.cookie, "none");
        EXPECT_THAT(page.html, HasSubstr("That password is wrong."));
        EXPECT_THAT(page.html, HasSubstr(R"(value="robin")"));
    }
}

TEST_F(LoginPage, UserIsAskedFor) {
    for (const char* form : {"user=&password=wren", "user=++&password=wren", "password=wren", "", "&&=&"}) {
        const Page page = ask("POST", url, form);
        EXPECT_EQ(page.status, 200u) << form;
        EXPECT_THAT(page.html, HasSubstr("Please enter your user name."));
    }
    EXPECT_EQ(ask("POST", url, nullptr).status, 200u);
}

TEST_F(LoginPage, WhatWasTypedIsDecodedAndShownAsText) {
    const Page page = ask("POST", url, "password=x&us%65r=a%3Cb%3e%22%26+%c3%a4%zz");
    EXPECT_THAT(page.html, HasSubstr("value=\"a&lt;b&gt;&quot;&amp; \xc3\xa4%zz\""));
}

TEST_F(LoginPage, OtherMethodsAreNotAllowed) {
    EXPECT_EQ(ask("DELETE", url).status, 405u);
    EXPECT_EQ(ask("post", url).status, 405u);
}

TEST_F(LoginPage, OtherAddressesAreNotTheServices) {
    for (const char* other : {"https://login.example.test/enroll", "https://login.example.test/enroll/done",
                              "https://elsewhere.test/enroll?login=enr-1", "", "/"}) {
        EXPECT_EQ(ask("GET", other).status, 0u) << other;
    }
    EXPECT_FALSE(wrensim_login_page(
        nullptr, url.c_str(), "", [](auto...) {}, nullptr));
    EXPECT_FALSE(wrensim_login_page(
        "GET", nullptr, "", [](auto...) {}, nullptr));
    EXPECT_FALSE(wrensim_login_page("GET", url.c_str(), "", nullptr, nullptr));
}

TEST_F(LoginPage, LoginThatIsOverSaysSo) {
    cancel(id);
    const Page page = ask("POST", url, "user=robin&password=wren");
    EXPECT_EQ(page.status, 410u);
    EXPECT_EQ(page.cookie, "none");
    EXPECT_THAT(page.html, HasSubstr("This login is over"));
    EXPECT_EQ(ask("GET", "https://login.example.test/access?login=never").status, 410u);
}

TEST_F(LoginPage, IsAsTheScenarioSays) {
    load(R"("logins":{"enrollment":{"start_url":"http://a/?x=1","end_url":"http://a/end","cookie_name":"n",)"
         R"("cookie":"c","password":"a<b"}})");
    const std::string other = "http://a/?x=1&login=" + atLogin();
    EXPECT_THAT(ask("GET", other).html, HasSubstr("<kbd>a&lt;b</kbd>"));
    const Page page = ask("POST", other, "user=u&password=a%3Cb");
    EXPECT_EQ(page.location, "http://a/end");
    EXPECT_EQ(page.cookie, "n=c; Path=/; Secure; HttpOnly");
}

TEST_F(LoginPage, ServesDataplaneRequestsToo) {
    load(R"("device":{"enrolled":true,"dataplane_auth_requests":[{"context_id":"c&1","destination":)"
         R"({"host":"h","port":1,"proto":"tcp"}}]})");
    const std::string access = "https://login.example.test/access?login=c%261";
    EXPECT_THAT(ask("GET", access).html, HasSubstr("access to a protected destination"));
    EXPECT_EQ(ask("POST", access, "user=u&password=wren").cookie,
              "authorization=" + cookie(wrensim_dataplane_login, "c&1") + "; Path=/; Secure; HttpOnly");
}

} // namespace
