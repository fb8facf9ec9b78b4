#include "common2/logging/LogCore.h"

#include "tests/support/LogCapture.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/log/attributes/attribute_value_impl.hpp>
#include <boost/log/attributes/constant.hpp>
#include <boost/log/attributes/current_process_id.hpp>
#include <boost/log/attributes/current_thread_id.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record.hpp>
#include <gtest/gtest.h>

#include <locale>
#include <sstream>
#include <string>

namespace {

namespace logging = boost::log;
namespace names = common2::logAttribute;

class LogLineTest : public testing::Test {
protected:
    template <class Value>
    void with(const char* name, const Value& value) {
        record.attribute_values().insert(name, logging::attributes::make_attribute_value(value));
    }

    std::string line() { return common2::formatLogLine(record.lock()); }

    template <class Value>
    static std::string streamed(const Value& value) {
        std::ostringstream text;
        text << value;
        return text.str();
    }

private:
    test::LogCapture sink; // without any sink the core opens records for its own
    logging::record record = logging::core::get()->open_record(logging::attribute_set());
};

TEST_F(LogLineTest, HoldsEveryPartInItsPlace) {
    namespace gregorian = boost::gregorian;
    namespace posix = boost::posix_time;
    const auto thread = logging::attributes::current_thread_id().get_value();
    const auto process = logging::attributes::current_process_id().get_value();
    const auto threadId = logging::extract<logging::attributes::current_thread_id::value_type>(thread).get();
    const auto processId =
        logging::extract<logging::attributes::current_process_id::value_type>(process).get();
    with(names::timeStamp, posix::ptime(gregorian::date(2024, 3, 9), posix::time_duration(7, 5, 2, 42)));
    with(names::source, std::string("some_source"));
    with(names::threadId, threadId);
    with(names::processId, processId);
    with(names::severity, DBG_WARN);
    with(names::file, std::string("Some"));
    with(names::line, 17);
    with(names::function, std::string("Some::operation"));
    with(names::message, std::string("the message"));
    EXPECT_EQ(line(), "2024-03-09 07:05:02.000042 some_source[" + streamed(threadId) + ", " +
                          streamed(processId) + "] W/ Some:17 Some::operation() the message");
}

TEST_F(LogLineTest, NumbersAreWrittenAlikeInEveryLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    with(names::line, 12345);
    const std::locale former = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    const std::string text = line();
    std::locale::global(former);
    EXPECT_EQ(text, " [, ] / :12345 () ");
}

TEST_F(LogLineTest, AttributeThatIsMissingLeavesItsPlaceEmpty) { EXPECT_EQ(line(), " [, ] / : () "); }

TEST_F(LogLineTest, AttributeOfAnotherTypeIsAsGoodAsMissing) {
    with(names::timeStamp, 1);
    with(names::source, 2);
    with(names::severity, std::string("W"));
    with(names::line, std::string("3"));
    with(names::message, 4);
    EXPECT_EQ(line(), " [, ] / : () ");
}

TEST_F(LogLineTest, Severity7PrintsU) {
    with(names::severity, static_cast<Common2LogSeverity>(7));
    EXPECT_EQ(line(), " [, ] U/ : () ");
}

TEST_F(LogLineTest, TimeThatIsNoneIsLeftOut) {
    with(names::timeStamp, boost::posix_time::ptime());
    EXPECT_EQ(line(), " [, ] / : () ");
}

TEST(SeverityMark, EverySeverityHasItsLetter) {
    EXPECT_EQ(common2::severityMark(0), 'T');
    EXPECT_EQ(common2::severityMark(1), 'I');
    EXPECT_EQ(common2::severityMark(2), 'W');
    EXPECT_EQ(common2::severityMark(3), 'E');
    EXPECT_EQ(common2::severityMark(4), 'U');
    EXPECT_EQ(common2::severityMark(7), 'U');
    EXPECT_EQ(common2::severityMark(-1), 'U');
}

TEST(LogFilter, KeepsRecordsFromTheSinksUntilItIsRemoved) {
    const test::LogCapture capture;
    common2::installLogFilter(
        [](const logging::attribute_value_set& record) {
            return logging::extract_or_default<Common2LogSeverity>(names::severity, record, DBG_TRACE) !=
                   DBG_WARN;
        },
        DBG_INFO);
    COMMON2_LOG(DBG_TRACE, "f") << "trace";
    COMMON2_LOG(DBG_INFO, "f") << "info";
    COMMON2_LOG(DBG_WARN, "f") << "warn";
    common2::removeLogFilter();
    COMMON2_LOG(DBG_TRACE, "f") << "later trace";
    COMMON2_LOG(DBG_WARN, "f") << "later warn";
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"info", "later trace", "later warn"}));
}

TEST(LogFilter, OperandsBelowTheLowestSeverityAreNotEvaluated) {
    const test::LogCapture capture;
    common2::installLogFilter([](const logging::attribute_value_set&) { return true; }, DBG_ERROR);
    int evaluated = 0;
    COMMON2_LOG(DBG_WARN, "f") << ++evaluated;
    COMMON2_LOG(DBG_ERROR, "f") << ++evaluated;
    common2::removeLogFilter();
    EXPECT_EQ(evaluated, 1);
}

} // namespace
