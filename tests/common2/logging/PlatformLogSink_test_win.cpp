#include "common2/logging/PlatformLogSink.h"

#include "common2/logging/LogCore.h"
#include "tests/support/SystemLogCapture.h"

#include <boost/log/core/core.hpp>
#include <gtest/gtest.h>

#include <string>

namespace {

/// What the event log gets of a line with that message.
std::string reported(const std::string& message) {
    test::systemLog::reset();
    const auto sink = common2::makePlatformLogSink("some_source");
    boost::log::core::get()->add_sink(sink);
    COMMON2_LOG_AT(DBG_INFO, "F", 1, "f") << message;
    boost::log::core::get()->remove_sink(sink);
    const auto lines = test::systemLog::lines();
    return lines.size() == 1 ? lines[0].text : "another number of lines";
}

const std::string before = " [, ] I/ F:1 f() ";
constexpr std::size_t mostUnits = 31'839; // that the system takes

TEST(EventLog, LineOfTheSystemsLimitStaysWhole) {
    const std::string message(mostUnits - before.size(), 'x');
    EXPECT_EQ(reported(message), before + message);
}

TEST(EventLog, LongerLineIsCutAndNotLost) {
    EXPECT_EQ(reported(std::string(100'000, 'x')), before + std::string(mostUnits - before.size(), 'x'));
}

TEST(EventLog, CutNeverPartsTheTwoHalvesOfACharacter) {
    const std::string whole(mostUnits - before.size() - 1, 'x');
    EXPECT_EQ(reported(whole + "\xF0\x9F\x90\xA6"), before + whole);
    EXPECT_EQ(reported(whole.substr(1) + "\xF0\x9F\x90\xA6" + "x"),
              before + whole.substr(1) + "\xF0\x9F\x90\xA6");
}

} // namespace
