#include "common2/logging/Common2Loggers.h"

#include "common2/logging/LogCore.h"
#include "tests/support/LogCapture.h"

#include <boost/log/core/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

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

TEST(LogStatement, LinesOfManyThreadsKeepTheirOwnSeverityAndMessage) {
    const test::LogCapture capture;
    constexpr int linesOfAThread = 200;
    std::vector<std::thread> threads;
    for (int severity = DBG_TRACE; severity <= DBG_ERROR; ++severity) {
        threads.emplace_back([severity] {
            for (int line = 0; line < linesOfAThread; ++line) {
                COMMON2_LOG(severity, "f") << severity << '/' << line;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int severity = DBG_TRACE; severity <= DBG_ERROR; ++severity) {
        std::vector<std::string> expected;
        for (int line = 0; line < linesOfAThread; ++line) {
            expected.push_back(std::to_string(severity) + "/" + std::to_string(line));
        }
        EXPECT_EQ(capture.messages(severity), expected);
    }
}

TEST(LogStatement, TroubleOfASinkStaysWithTheSink) {
    class Troubled : public boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
    public:
        void consume(const boost::log::record_view&) { throw std::runtime_error("full"); }
    };
    const auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<Troubled>>();
    boost::log::core::get()->add_sink(sink);
    EXPECT_NO_THROW(COMMON2_LOG(DBG_ERROR, "f") << "lost");
    boost::log::core::get()->remove_sink(sink);
    const test::LogCapture capture;
    COMMON2_LOG(DBG_ERROR, "f") << "next";
    EXPECT_EQ(capture.messages(), std::vector<std::string>{"next"});
}

} // namespace
