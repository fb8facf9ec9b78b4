#include "backend-sim/LoginCookies.h"
#include "tests/support/MatchesPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

constexpr WrenSimLogin enrollment = wrensim_enrollment_login;
constexpr WrenSimLogin dataplane = wrensim_dataplane_login;

class LoginCookies : public ::testing::Test {
protected:
    std::string cookieOf(WrenSimLogin kind, const char* id) const {
        return cookies.cookieOf(kind, id).value_or("none");
    }

    sim::LoginCookies cookies;
};

TEST_F(LoginCookies, EachLoginHasARandomCookieOfItsOwn) {
    cookies.open(enrollment, "a", "");
    cookies.open(enrollment, "b", "");
    cookies.open(dataplane, "a", "");
    EXPECT_THAT(cookieOf(enrollment, "a"), test::MatchesPattern("[0-9a-f]+"));
    EXPECT_EQ(cookieOf(enrollment, "a").size(), 32u);
    EXPECT_NE(cookieOf(enrollment, "a"), cookieOf(enrollment, "b"));
    EXPECT_NE(cookieOf(enrollment, "a"), cookieOf(dataplane, "a"));
}

TEST_F(LoginCookies, AcceptsTheCookieOfTheLoginAlone) {
    cookies.open(enrollment, "a", "1");
    cookies.open(enrollment, "b", "2");
    EXPECT_TRUE(cookies.accepts(enrollment, "a", "1"));
    EXPECT_FALSE(cookies.accepts(enrollment, "a", "2"));
    EXPECT_FALSE(cookies.accepts(enrollment, "a", ""));
    EXPECT_FALSE(cookies.accepts(enrollment, "a", "11"));
    EXPECT_FALSE(cookies.accepts(enrollment, "other", "1"));
    EXPECT_FALSE(cookies.accepts(enrollment, "other", ""));
    EXPECT_FALSE(cookies.accepts(dataplane, "a", "1"));
}

TEST_F(LoginCookies, ClosedLoginAcceptsNothing) {
    cookies.open(enrollment, "a", "1");
    cookies.close(enrollment, "a");
    cookies.close(enrollment, "a");
    cookies.close(dataplane, "never opened");
    EXPECT_FALSE(cookies.accepts(enrollment, "a", "1"));
    EXPECT_EQ(cookieOf(enrollment, "a"), "none");
}

TEST_F(LoginCookies, LoginThatIsOpenedAgainGetsANewCookie) {
    cookies.open(enrollment, "a", "");
    const std::string old = cookieOf(enrollment, "a");
    cookies.open(enrollment, "a", "");
    EXPECT_FALSE(cookies.accepts(enrollment, "a", old));
}

TEST_F(LoginCookies, LatestIsTheOneOpenedLastOfItsKind) {
    EXPECT_EQ(cookies.latestCookie(enrollment), std::nullopt);
    cookies.open(enrollment, "z", "1");
    cookies.open(enrollment, "a", "2");
    cookies.open(dataplane, "m", "3");
    EXPECT_EQ(cookies.latestCookie(enrollment), "2");
    cookies.open(enrollment, "z", "4");
    EXPECT_EQ(cookies.latestCookie(enrollment), "4");
    cookies.close(enrollment, "z");
    EXPECT_EQ(cookies.latestCookie(enrollment), "2");
}

TEST_F(LoginCookies, KeepsThoseThatGoOn) {
    cookies.keep(dataplane, {"a", "b"}, "");
    const std::string a = cookieOf(dataplane, "a");
    cookies.keep(dataplane, {"c", "a", "c"}, "fixed");
    EXPECT_EQ(cookieOf(dataplane, "a"), a);
    EXPECT_EQ(cookieOf(dataplane, "b"), "none");
    EXPECT_EQ(cookieOf(dataplane, "c"), "fixed");
    cookies.open(enrollment, "a", "1");
    cookies.keep(dataplane, {}, "");
    EXPECT_EQ(cookies.latestCookie(dataplane), std::nullopt);
    EXPECT_TRUE(cookies.accepts(enrollment, "a", "1"));
    cookies.closeAll();
    EXPECT_FALSE(cookies.accepts(enrollment, "a", "1"));
}

} // namespace
