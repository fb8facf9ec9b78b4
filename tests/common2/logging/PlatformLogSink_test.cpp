#include "common2/logging/PlatformLogSink.h"

#include "common2/logging/LogCore.h"
#include "tests/support/SystemLogCapture.h"

#include <boost/log/core/core.hpp>
#include <boost/log/sources/logger.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <gtest/gtest.h>

namespace {

class PlatformLogSinkTest : public testing::Test {
protected:
    PlatformLogSinkTest() {
        test::systemLog::reset();
        sink = common2::makePlatformLogSink("some_source");
        boost::log::core::get()->add_sink(sink);
    }
    ~PlatformLogSinkTest() override { remove(); }

    void remove() {
        boost::log::core::get()->remove_sink(sink);
        sink.reset();
    }

private:
    boost::shared_ptr<boost::log::sinks::sink> sink;
};

TEST_F(PlatformLogSinkTest, RegistersItsSourceWhileItExists) {
    EXPECT_EQ(test::systemLog::source(), "some_source");
    remove();
    EXPECT_EQ(test::systemLog::source(), "");
}

TEST_F(PlatformLogSinkTest, WritesTheFormattedLineWithItsLevel) {
    COMMON2_LOG_AT(DBG_TRACE, "F", 1, "f") << "100% %s %n";
    COMMON2_LOG_AT(DBG_INFO, "F", 2, "f") << "i";
    COMMON2_LOG_AT(DBG_WARN, "F", 3, "f") << "w";
    COMMON2_LOG_AT(DBG_ERROR, "F", 4, "f") << "e";
    COMMON2_LOG_AT(7, "F", 5, "f") << "u";
    const auto levels = test::systemLog::levels();
    EXPECT_EQ(test::systemLog::lines(),
              (std::vector<test::SystemLogLine>{{levels.trace, " [, ] T/ F:1 f() 100% %s %n"},
                                                {levels.info, " [, ] I/ F:2 f() i"},
                                                {levels.warning, " [, ] W/ F:3 f() w"},
                                                {levels.error, " [, ] E/ F:4 f() e"},
                                                {levels.other, " [, ] U/ F:5 f() u"}}));
}

TEST_F(PlatformLogSinkTest, KeepsLinesInUtf8) {
    COMMON2_LOG_AT(DBG_INFO, "F", 1, "f") << "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x90\xA6";
    EXPECT_EQ(test::systemLog::lines(),
              (std::vector<test::SystemLogLine>{
                  {test::systemLog::levels().info,
                   " [, ] I/ F:1 f() gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x90\xA6"}}));
}

TEST_F(PlatformLogSinkTest, LineOfOthersWithoutASeverityIsInformation) {
    boost::log::sources::logger others;
    BOOST_LOG(others) << "no attributes of ours";
    EXPECT_EQ(test::systemLog::lines(),
              (std::vector<test::SystemLogLine>{
                  {test::systemLog::levels().info, " [, ] / : () no attributes of ours"}}));
}

} // namespace
