#include "common2/logging/Common2Loggers.h"

#include "common2/logging/LogCore.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

TEST(LogStatement, CarriesSeverityPlaceAndMessage) {
    const test::LogCapture capture;
    COMMON2_LOG(DBG_WARN, "Some::operation") << "answer " << 42 << ' ' << std::string("given");
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].severity, 2);
    EXPECT_EQ(records[0].function, "Some::operation");
    EXPECT_EQ(records[0].file, "Common2Loggers_test");
    EXPECT_EQ(records[0].message, "answer 42 given");
}

TEST(LogStatement, FileIsWhatFollowsTheLastBackslash) {
    EXPECT_EQ(common2::logFileName("C:\\work\\common\\state_machine/QuillSmlLogger"),
              "state_machine/QuillSmlLogger");
}

TEST(LogStatement, FileWithoutBackslashIsUsedWhole) {
    EXPECT_EQ(common2::logFileName("common/state_machine/QuillSmlLogger"),
              "common/state_machine/QuillSmlLogger");
}

} // namespace
