#include "host/serve/AccessRule.h"
#include "tests/support/MatchesPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using host::serve::AccessClaim;
using host::serve::AccessRule;

const AccessRule rule("0123456789abcdef", 4711);

std::string admitted(const AccessClaim& claim) {
    const auto path = rule.admit(claim);
    return path ? "\"" + std::string(*path) + "\"" : "refused";
}

std::string admitted(std::string_view target) { return admitted({target, "127.0.0.1:4711", {}, false}); }

TEST(AccessRule, GivesThePathBelowTheToken) {
    EXPECT_EQ(admitted("/0123456789abcdef/"), R"("")");
    EXPECT_EQ(admitted("/0123456789abcdef/app/page.js"), R"("app/page.js")");
    EXPECT_EQ(admitted("/0123456789abcdef/live?x=/0/"), R"("live")");
    EXPECT_EQ(admitted("/0123456789abcdef//"), R"("/")");
    EXPECT_EQ(rule.root(), "/0123456789abcdef/");
}

TEST(AccessRule, RefusesWithoutTheToken) {
    for (const char* target :
         {"", "/", "//", "/app/page.js", "/0123456789abcdef", "/0123456789abcdef?/", "/0123456789abcde/",
          "/0123456789abcdeg/", "/0123456789abcdef0/", "/0123456789ABCDEF/", "0123456789abcdef/",
          "/%30123456789abcdef/", "//0123456789abcdef/", "http://127.0.0.1:4711/0123456789abcdef/", "*"}) {
        EXPECT_EQ(admitted(target), "refused") << target;
    }
}

TEST(AccessRule, HostMustBeThisMachineAtThisPort) {
    const auto withHost = [](std::optional<std::string_view> host) {
        return admitted({"/0123456789abcdef/", host, {}, false});
    };
    EXPECT_EQ(withHost("127.0.0.1:4711"), R"("")");
    EXPECT_EQ(withHost("localhost:4711"), R"("")");
    EXPECT_EQ(withHost({}), "refused");
    for (const char* host :
         {"", "127.0.0.1", "localhost", "127.0.0.1:4712", "localhost:47110", "LOCALHOST:4711",
          "evil.test:4711", "127.0.0.1:4711 ", "[::1]:4711", "127.0.0.1:4711.evil.test"}) {
        EXPECT_EQ(withHost(host), "refused") << host;
    }
}

TEST(AccessRule, OriginMustBeOursWhereItIsSent) {
    const auto withOrigin = [](const char* origin) {
        return admitted({"/0123456789abcdef/", "localhost:4711", origin, false});
    };
    EXPECT_EQ(withOrigin("http://localhost:4711"), R"("")");
    for (const char* origin :
         {"", "null", "http://127.0.0.1:4711", "https://localhost:4711", "http://localhost",
          "http://evil.test", "http://localhost:4711/", "localhost:4711"}) {
        EXPECT_EQ(withOrigin(origin), "refused") << origin;
    }
}

TEST(AccessRule, SocketNeedsAnOrigin) {
    EXPECT_EQ(admitted({"/0123456789abcdef/live", "localhost:4711", {}, true}), "refused");
    EXPECT_EQ(admitted({"/0123456789abcdef/live", "localhost:4711", "http://localhost:4711", true}),
              R"("live")");
    EXPECT_EQ(admitted({"/0123456789abcdef/live", "localhost:4711", "http://evil.test", true}), "refused");
}

TEST(AccessRule, TokensAreRandom) {
    const std::string token = host::serve::randomToken();
    EXPECT_THAT(token, test::MatchesPattern("[0-9a-f]+"));
    EXPECT_EQ(token.size(), 32u);
    EXPECT_NE(token, host::serve::randomToken());
}

} // namespace
