// What the server answers to those who speak HTTP.
#include "tests/host/serve/ServedProgram.h"
#include "tests/support/MatchesPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using test::MatchesPattern;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// One server for all tests here: none of them changes anything.
class ServeHttp : public ::testing::Test {
protected:
    static void SetUpTestSuite() { program = std::make_unique<test::ServedProgram>(); }
    static void TearDownTestSuite() {
        EXPECT_EQ(program->interrupt(), 0);
        program.reset();
    }

    static unsigned status(const std::string& method, const std::string& target,
                           const test::Headers& headers = {}) {
        return program->ask(method, target, "", headers).result_int();
    }
    static std::string header(const test::HttpResponse& response, const char* name) {
        return std::string(response[name]);
    }

    static std::unique_ptr<test::ServedProgram> program;
};

std::unique_ptr<test::ServedProgram> ServeHttp::program;

TEST_F(ServeHttp, AddressIsOneLineWithARandomToken) {
    EXPECT_THAT(program->address(), MatchesPattern("http://127\\.0\\.0\\.1:[0-9]+/[0-9a-f]+/"));
    EXPECT_EQ(program->root().size(), 34u);
}

TEST_F(ServeHttp, ServesThePageWithItsPolicy) {
    const test::HttpResponse page = program->get("");
    EXPECT_EQ(page.result_int(), 200u);
    EXPECT_EQ(page.body(), "<!doctype html><title>the page</title>");
    EXPECT_EQ(header(page, "Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(
        header(page, "Content-Security-Policy"),
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self' ws://" +
            program->host() +
            "; frame-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
    EXPECT_EQ(header(page, "X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(header(page, "Referrer-Policy"), "no-referrer");
    EXPECT_EQ(header(page, "Cache-Control"), "no-store");
    EXPECT_EQ(header(page, "Cross-Origin-Opener-Policy"), "same-origin");
    EXPECT_EQ(header(page, "Cross-Origin-Resource-Policy"), "same-origin");
    EXPECT_EQ(program->get("app/page.js").body(), "export {};");
    EXPECT_EQ(header(program->get("app/page.js"), "Content-Type"), "text/javascript; charset=utf-8");
}

TEST_F(ServeHttp, LocalPageMayBeFramedByThePage) {
    const test::HttpResponse page = program->get("pages/wren/v1/index.html");
    EXPECT_EQ(page.result_int(), 200u);
    EXPECT_THAT(header(page, "Content-Security-Policy"), HasSubstr("frame-ancestors 'self'"));
}

TEST_F(ServeHttp, HeadHasNoBody) {
    const test::HttpResponse page = program->ask("HEAD", program->root());
    EXPECT_EQ(page.result_int(), 200u);
    EXPECT_EQ(page.body(), "");
    EXPECT_EQ(header(page, "Content-Length"), "38");
}

TEST_F(ServeHttp, NothingWithoutTheToken) {
    std::string wrong = program->root();
    wrong[1] = wrong[1] == '0' ? '1' : '0';
    for (const std::string& target :
         {std::string("/"), std::string("/app/page.js"), wrong, wrong + "app/page.js",
          program->root().substr(0, 33), "/x" + program->root()}) {
        const test::HttpResponse refusal = program->ask("GET", target);
        EXPECT_EQ(refusal.result_int(), 403u) << target;
        EXPECT_THAT(header(refusal, "Content-Security-Policy"), HasSubstr("default-src 'none'"));
        EXPECT_THAT(refusal.body(), Not(HasSubstr("page")));
    }
}

TEST_F(ServeHttp, HostMustBeThisMachine) {
    const std::string port = std::to_string(program->port());
    EXPECT_EQ(status("GET", program->root(), {{"Host", "localhost:" + port}}), 200u);
    for (const std::string& host : {std::string("evil.test"), "evil.test:" + port, std::string("127.0.0.1"),
                                    "127.0.0.2:" + port, "127.0.0.1:1" + port}) {
        EXPECT_EQ(status("GET", program->root(), {{"Host", host}}), 403u) << host;
    }
    EXPECT_THAT(program->exchange("GET " + program->root() + " HTTP/1.0\r\n\r\n"),
                StartsWith("HTTP/1.0 403 "));
    EXPECT_THAT(program->exchange("GET " + program->root() + " HTTP/1.1\r\nHost: " + program->host() +
                                  "\r\nHost: evil.test\r\nConnection: close\r\n\r\n"),
                StartsWith("HTTP/1.1 403 "));
}

TEST_F(ServeHttp, OriginMustBeOurs) {
    EXPECT_EQ(status("GET", program->root(), {{"Origin", "http://" + program->host()}}), 200u);
    for (const std::string& origin :
         {std::string("http://evil.test"), std::string("null"), "https://" + program->host(),
          "http://" + program->host() + ".evil.test"}) {
        EXPECT_EQ(status("GET", program->root(), {{"Origin", origin}}), 403u) << origin;
    }
}

TEST_F(ServeHttp, PathsLeadNowhereElse) {
    for (const char* path :
         {"../../bin/wren-host", "app/../../../bin/wren-host", "app/%2e%2e/app/page.js", "app/../app/page.js",
          "app//page.js", "/etc/passwd", "app", "app/", "pages/", "scenario.schema.json", "nothing",
          "browser", "browser/", "browser/x/", "browser/01/", "browser/-1/", "browser/1", "browser/1/more",
          "browser/99999999999999999999999/"}) {
        EXPECT_EQ(program->get(path).result_int(), 404u) << path;
    }
}

TEST_F(ServeHttp, OtherMethodsAreRefused) {
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "TRACE"}) {
        const test::HttpResponse refusal = program->ask(method, program->root());
        EXPECT_EQ(refusal.result_int(), 405u) << method;
        EXPECT_EQ(header(refusal, "Allow"), "GET, HEAD");
    }
    const test::HttpResponse refusal = program->ask("PUT", program->root() + "browser/1/");
    EXPECT_EQ(refusal.result_int(), 405u);
    EXPECT_EQ(header(refusal, "Allow"), "GET, HEAD, POST");
}

TEST_F(ServeHttp, LoginThatIsNotOpenIsOver) {
    const test::HttpResponse page = program->get("browser/77/");
    EXPECT_EQ(page.result_int(), 410u);
    EXPECT_THAT(page.body(), HasSubstr("This login is over"));
}

TEST_F(ServeHttp, SocketsAddressNeedsAnUpgrade) { EXPECT_EQ(program->get("live").result_int(), 426u); }

TEST_F(ServeHttp, TooMuchIsRefused) {
    const std::string head = " HTTP/1.1\r\nHost: " + program->host() + "\r\n";
    EXPECT_THAT(
        program->exchange("GET " + program->root() + head + "X: " + std::string(9'000, 'x') + "\r\n\r\n"),
        StartsWith("HTTP/1.1 431 "));
    EXPECT_THAT(
        program->exchange("POST " + program->root() + "browser/1/" + head + "Content-Length: 16385\r\n\r\n"),
        StartsWith("HTTP/1.1 413 "));
    EXPECT_EQ(program->ask("POST", program->root() + "browser/1/", std::string(16'384, 'x')).result_int(),
              410u);
}

TEST_F(ServeHttp, WhatIsNoRequestIsRefused) {
    EXPECT_THAT(program->exchange("hello\r\n\r\n"), StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(program->exchange(std::string("\0\0\0\0", 4)), StartsWith("HTTP/1.1 400 "));
    EXPECT_THAT(program->exchange("GET / HTTP/9.9\r\n\r\n"), StartsWith("HTTP/1.1 400 "));
}

TEST_F(ServeHttp, ConnectionServesSeveralRequests) {
    const std::string request = " HTTP/1.1\r\nHost: " + program->host() + "\r\n";
    const std::string answers = program->exchange("GET " + program->root() + request + "\r\nGET /" + request +
                                                  "Connection: close\r\n\r\n");
    EXPECT_THAT(answers, StartsWith("HTTP/1.1 200 "));
    EXPECT_THAT(answers, HasSubstr("HTTP/1.1 403 "));
}

TEST_F(ServeHttp, RecordingIsADownload) {
    const test::HttpResponse recording = program->get("session.jsonl");
    EXPECT_EQ(recording.result_int(), 200u);
    EXPECT_EQ(header(recording, "Content-Disposition"), "attachment; filename=\"session.jsonl\"");
    EXPECT_THAT(recording.body(), StartsWith("{\"do\":\"create\","));
}

TEST(ServeStart, PortThatIsTakenIsAnError) {
    test::ServedProgram first;
    test::ServedProgram second({"--port", std::to_string(first.port())});
    EXPECT_EQ(second.address(), "");
    EXPECT_EQ(second.wait(), 2);
}

TEST(ServeStart, WrongArgumentsAreErrors) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--port", "65536"},
                                               {"--port", "x"},
                                               {"--slow", "5001"},
                                               {"--log", "ALL"},
                                               {"--scenario", "/nonexistent"},
                                               {"--module", "/nonexistent"},
                                               {"more"}}) {
        test::ServedProgram program(arguments);
        EXPECT_EQ(program.address(), "") << ::testing::PrintToString(arguments);
        EXPECT_EQ(program.wait(), 2);
    }
}

TEST(ServeStart, EndsWithTheSystemsWish) {
    for (const auto end : {&test::ServedProgram::interrupt, &test::ServedProgram::terminate}) {
        test::ServedProgram program;
        EXPECT_EQ((program.*end)(), 0);
    }
}

} // namespace
