#include "common/logging/QuillLogging.h"
#include "host/system/DataFolder.h"
#include "tests/allocation/FailingAllocation.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SystemLogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <boost/log/core/core.hpp>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

// The log where memory runs out. No module is in this program, so nobody but the test sets the log up.

namespace {

using Texts = std::vector<std::string>;

constexpr const char* sourceName = "a source with a name that needs memory";

class LogFaults : public testing::Test {
protected:
    LogFaults() {
        test::systemLog::reset();
        folder.write("Norvane/Norvane Kestrel Suite/WREN/logconfig.json", R"({"global":"DBG_ERROR"})");
        COMMON2_LOG(DBG_TRACE, "f") << "makes what the library makes once";
    }

    static void expectNothingLeft() {
        const test::LogCapture log;
        COMMON2_LOG(DBG_TRACE, "f") << "not filtered";
        EXPECT_EQ(log.messages(), Texts{"not filtered"});
        EXPECT_EQ(boost::log::core::get()->get_global_attributes().size(), 0u);
        EXPECT_EQ(test::systemLog::source(), "");
    }

    test::TemporaryFolder folder;

private:
    host::DataFolder data{folder.path()};
};

TEST_F(LogFaults, ALineGoesOutWithoutThePieceThatFoundNoMemory) {
    const std::string longText(10'000, 'x');
    const test::LogCapture log;
    {
        common2::LogStatement line(DBG_ERROR, "file", 1, "function");
        line << "first ";
        {
            const test::NoAllocation none;
            line << longText;
        }
        line << "last";
    }
    EXPECT_EQ(log.messages(), Texts{"first last"});
}

TEST_F(LogFaults, WhateverWasSetUpIsTakenDownAgain) {
    bool hasFailed = true;
    std::size_t allocation = 1;
    for (; hasFailed && !HasFailure(); ++allocation) {
        SCOPED_TRACE(allocation);
        {
            const test::FailingAllocation failing(allocation);
            const QuillBaseLogging logging(sourceName);
            hasFailed = failing.hasFailed();
        }
        expectNothingLeft();
    }
    EXPECT_GT(allocation, 20u);
}

TEST_F(LogFaults, AnAllocationThatFailsAtTheEndKeepsNothingUp) {
    std::optional<QuillBaseLogging> logging(sourceName);
    ASSERT_EQ(test::systemLog::source(), sourceName);
    bool hasFailed = false;
    {
        const test::FailingAllocation failing(1);
        logging.reset();
        hasFailed = failing.hasFailed();
    }
    EXPECT_TRUE(hasFailed);
    expectNothingLeft();
}

} // namespace
