#include "common2/logging/PlatformLogSink.h"

#include "common2/logging/LogCore.h"
#include "tests/support/SystemLogCapture.h"

#include <boost/log/core/core.hpp>
#include <gtest/gtest.h>

#include <syslog.h>

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

TEST_F(PlatformLogSinkTest, WritesTheFormattedLineWithAPriority) {
    COMMON2_LOG_AT(DBG_TRACE, "F", 1, "f") << "100% %s %n";
    COMMON2_LOG_AT(DBG_INFO, "F", 2, "f") << "i";
    COMMON2_LOG_AT(DBG_WARN, "F", 3, "f") << "w";
    COMMON2_LOG_AT(DBG_ERROR, "F", 4, "f") << "e";
    COMMON2_LOG_AT(7, "F", 5, "f") << "u";
    EXPECT_EQ(test::systemLog::lines(),
              (std::vector<test::SystemLogLine>{{LOG_DEBUG, " [, ] T/ F:1 f() 100% %s %n"},
                                                {LOG_INFO, " [, ] I/ F:2 f() i"},
                                                {LOG_WARNING, " [, ] W/ F:3 f() w"},
                                                {LOG_ERR, " [, ] E/ F:4 f() e"},
                                                {LOG_INFO, " [, ] U/ F:5 f() u"}}));
}

} // namespace
