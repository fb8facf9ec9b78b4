#include "host/LogTap.h"

#include "tests/host/module-system/ModuleSystem.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;

struct Caught {
    std::vector<std::string> messages;
    host::LogTap tap{[this](const host::LogRecord& record) { messages.push_back(record.message); }};
};

TEST(LogTap, TakesTheRecordApart) {
    host::LogRecord caught;
    const host::LogTap tap([&](const host::LogRecord& record) { caught = record; });
    test::module_system::log("now source[1, 2] W/ File:3 A::operator ()() text");
    EXPECT_EQ(caught, (host::LogRecord{2, "A::operator ()", "File", 3, "text"}));
}

TEST(LogTap, TakesLongTexts) {
    Caught caught;
    const std::string text(100'000, 'x');
    test::module_system::log(text);
    EXPECT_THAT(caught.messages, ElementsAre(text));
}

TEST(LogTap, AfterItsEndTheLogGoesNowhere) {
    std::vector<std::string> messages;
    {
        const host::LogTap tap([&](const host::LogRecord& record) { messages.push_back(record.message); });
        test::module_system::log("caught");
    }
    test::module_system::log("lost");
    EXPECT_THAT(messages, ElementsAre("caught"));
}

} // namespace
