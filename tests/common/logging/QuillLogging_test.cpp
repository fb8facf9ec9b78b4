#include "common/logging/QuillLogging.h"

#include "common2/logging/LogCore.h"
#include "host/system/DataFolder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SystemLogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <boost/log/attributes/constant.hpp>
#include <boost/log/core/core.hpp>
#include <gtest/gtest.h>

#include <cstdio>

namespace {

namespace systemLog = test::systemLog;
namespace names = common2::logAttribute;

constexpr const char* configPath = "Norvane/Norvane Kestrel Suite/WREN/logconfig.json";

class QuillLoggingTest : public testing::Test {
protected:
    QuillLoggingTest() { systemLog::reset(); }

    /// Messages of one statement at every severity that came through.
    static std::vector<std::string> kept() {
        const test::LogCapture capture;
        for (const int severity : {DBG_TRACE, DBG_INFO, DBG_WARN, DBG_ERROR}) {
            COMMON2_LOG(severity, "some::operation") << severity;
        }
        return capture.messages();
    }

    static bool hasGlobal(const char* name) {
        return boost::log::core::get()->get_global_attributes().count(name) != 0;
    }

    test::TemporaryFolder folder;

private:
    host::DataFolder data{folder.path()};
};

using Texts = std::vector<std::string>;

TEST_F(QuillLoggingTest, WithoutFileTheStartUpFilterHolds) {
    const test::LogCapture capture;
    const QuillBaseLogging logging("some_source");
    EXPECT_EQ(capture.messages(),
              (Texts{"failed to read file " + (folder.path() / configPath).make_preferred().string(),
                     "File2::ReadSync error: ios_base::failbit set"}));
    EXPECT_EQ(capture.records()[1].function, "QuillBaseLogging::applyConfigFile");
    EXPECT_EQ(capture.records()[1].severity, 3);
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
}

TEST_F(QuillLoggingTest, FileThatIsNoJsonKeepsTheEarlierFilter) {
    folder.write(configPath, "{\"global\":\"DBG_ERROR\"");
    const test::LogCapture capture;
    const QuillBaseLogging logging("some_source");
    const Texts messages = capture.messages();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[2].rfind("QuillLogConfig::QuillLogConfig error: ", 0), 0u);
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
}

TEST_F(QuillLoggingTest, GoodFileBecomesTheFilter) {
    folder.write(configPath, R"({"global":"DBG_WARN"})");
    const test::LogCapture capture;
    const QuillBaseLogging logging("some_source");
    EXPECT_EQ(capture.messages(), Texts());
    EXPECT_EQ(kept(), (Texts{"2", "3"}));
}

TEST_F(QuillLoggingTest, FileMayAskForMoreThanTheStartUpFilter) {
    folder.write(configPath, R"({"global":"DBG_ERROR","sources":{"some_source":"DBG_TRACE"}})");
    const QuillBaseLogging logging("some_source");
    EXPECT_EQ(kept(), (Texts{"0", "1", "2", "3"}));
}

TEST_F(QuillLoggingTest, FileMayBeAppliedAnew) {
    folder.write(configPath, R"({"global":"DBG_ERROR"})");
    QuillBaseLogging logging("some_source");
    EXPECT_EQ(kept(), Texts{"3"});
    folder.write(configPath, R"({"global":"DBG_INFO"})");
    logging.applyConfigFile();
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
    folder.write(configPath, "no json");
    logging.applyConfigFile();
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
}

TEST_F(QuillLoggingTest, LinesGoToThePlatformsLogUnderTheSourceName) {
    const QuillBaseLogging logging("some_source");
    systemLog::reset();
    COMMON2_LOG_AT(DBG_TRACE, "File", 1, "f") << "unseen";
    COMMON2_LOG_AT(DBG_WARN, "File", 42, "Some::operation") << "the message";
    const auto lines = systemLog::lines();
    ASSERT_EQ(lines.size(), 1u);
    char behind[100] = "";
    EXPECT_EQ(std::sscanf(lines[0].text.c_str(),
                          "%*4d-%*2d-%*2d %*2d:%*2d:%*2d.%*6d some_source[0x%*x, 0x%*x] %99[^\n]", behind),
              1)
        << lines[0].text;
    EXPECT_STREQ(behind, "W/ File:42 Some::operation() the message");
}

TEST_F(QuillLoggingTest, EmptyNameMakesNoSink) {
    const test::LogCapture capture;
    const QuillBaseLogging logging("");
    EXPECT_EQ(systemLog::source(), "");
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
    EXPECT_EQ(systemLog::lines(), std::vector<test::SystemLogLine>());
    EXPECT_TRUE(hasGlobal(names::source));
}

TEST_F(QuillLoggingTest, DestructionTakesAwayWhatWasAdded) {
    {
        const QuillBaseLogging logging("some_source");
        EXPECT_EQ(systemLog::source(), "some_source");
        for (const char* name : {names::timeStamp, names::processId, names::threadId, names::source}) {
            EXPECT_TRUE(hasGlobal(name)) << name;
        }
    }
    EXPECT_EQ(systemLog::source(), "");
    for (const char* name : {names::timeStamp, names::processId, names::threadId, names::source}) {
        EXPECT_FALSE(hasGlobal(name)) << name;
    }
    systemLog::reset();
    EXPECT_EQ(kept(), (Texts{"0", "1", "2", "3"}));
    EXPECT_EQ(systemLog::lines(), std::vector<test::SystemLogLine>());
}

TEST_F(QuillLoggingTest, AttributeOfSomebodyElseStays) {
    const auto theirs = boost::log::core::get()->add_global_attribute(
        names::source, boost::log::attributes::constant<std::string>("theirs"));
    ASSERT_TRUE(theirs.second);
    { const QuillBaseLogging logging("some_source"); }
    EXPECT_TRUE(hasGlobal(names::source));
    boost::log::core::get()->remove_global_attribute(theirs.first);
}

TEST_F(QuillLoggingTest, CanBeSetUpAgain) {
    { const QuillBaseLogging logging("first"); }
    const QuillBaseLogging logging("second");
    EXPECT_EQ(systemLog::source(), "second");
    EXPECT_EQ(kept(), (Texts{"1", "2", "3"}));
}

} // namespace
