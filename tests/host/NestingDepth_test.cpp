#include "host/DuplicateKeys.h"
#include "host/HostError.h"
#include "host/Notice.h"
#include "host/SessionFile.h"
#include "host/Text.h"
#include "host/recording/Redactor.h"
#include "host/serve/PageRequest.h"
#include "host/strict/EventId.h"

#include <gtest/gtest.h>

#include <string>

// Text that nests deeper than anyone means it to is refused before anything calls itself for each level.

namespace {

std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time) {
        text += piece;
    }
    return text;
}

std::string notice(std::size_t depth) {
    return "<vtguiNotice>" + repeated("<a>", depth - 1) + repeated("</a>", depth - 1) + "</vtguiNotice>";
}

TEST(NestingDepth, ANoticeOfAThousandLevelsIsRead) {
    EXPECT_EQ(host::parseNotice(notice(1000)).children.size(), 1u);
}

TEST(NestingDepth, ANoticeThatNestsDeeperIsNoNotice) {
    EXPECT_THROW(host::parseNotice(notice(1001)), host::HostError);
    EXPECT_THROW(host::parseNotice(notice(300'000)), host::HostError);
    EXPECT_THROW(host::parseNotice(repeated("<a>", 1'000'000)), host::HostError);
}

TEST(NestingDepth, AnEventThatNestsDeeperHasNoId) {
    const auto event = [](std::size_t depth) {
        return "<vtguiEvent id=\"x\">" + repeated("<a>", depth - 1) + repeated("</a>", depth - 1) +
               "</vtguiEvent>";
    };
    EXPECT_EQ(host::eventIdOf(event(1000)), "x");
    EXPECT_EQ(host::eventIdOf(event(1001)), "");
    EXPECT_EQ(host::eventIdOf(event(300'000)), "");
}

TEST(NestingDepth, JsonWithoutEndIsRefusedWhereverItComesIn) {
    const std::string brackets(1'000'000, '[');
    EXPECT_THROW(host::serve::PageRequest{brackets}, host::serve::RequestFault);
    EXPECT_THROW(host::parseSession(brackets, "name"), host::HostError);
    EXPECT_EQ(host::duplicateKey(brackets), std::nullopt);
    const std::string objects = repeated(R"({"a":)", 100'000);
    EXPECT_THROW(host::serve::PageRequest{objects}, host::serve::RequestFault);
    EXPECT_THROW(host::parseSession(objects, "name"), host::HostError);
    EXPECT_EQ(host::duplicateKey(objects), std::nullopt);
}

TEST(NestingDepth, TheRedactorGoesThroughBase64WithinBase64) {
    // Each level is a third larger than the one inside, so that no text can hold many of them.
    std::string text = R"({"cookie":"the secret itself"})";
    for (int level = 0; level < 30; ++level) {
        text = host::encodeBase64(text);
    }
    host::Redactor redactor;
    boost::json::object line{{"out", "notice"}, {"json", text}};
    redactor.learn(line);
    redactor.redact(line);
    std::string inner(line.at("json").as_string());
    for (int level = 0; level < 30; ++level) {
        inner = host::decodeBase64(inner).value();
    }
    EXPECT_EQ(inner, R"({"cookie":"redacted-1"})");
}

} // namespace
