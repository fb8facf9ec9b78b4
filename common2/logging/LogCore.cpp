#include "common2/logging/LogCore.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/log/attributes/current_process_id.hpp>
#include <boost/log/attributes/current_thread_id.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>

#include <cstdio>
#include <sstream>

namespace common2 {
namespace {

namespace logging = boost::log;

template <class Value>
void appendStreamed(std::string& line, const logging::record_view& record, const char* name) {
    if (const auto value = logging::extract<Value>(name, record)) {
        std::ostringstream text;
        text << value.get();
        line += text.str();
    }
}

void appendText(std::string& line, const logging::record_view& record, const char* name) {
    if (const auto value = logging::extract<std::string>(name, record)) {
        line += value.get();
    }
}

void appendTimeStamp(std::string& line, const logging::record_view& record) {
    const auto stamp = logging::extract<boost::posix_time::ptime>(logAttribute::timeStamp, record);
    if (!stamp || stamp->is_special()) {
        return;
    }
    const auto date = stamp->date().year_month_day();
    const auto time = stamp->time_of_day();
    char text[64];
    const int length =
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%06lld", static_cast<int>(date.year),
                      static_cast<int>(date.month), static_cast<int>(date.day),
                      static_cast<int>(time.hours()), static_cast<int>(time.minutes()),
                      static_cast<int>(time.seconds()), static_cast<long long>(time.fractional_seconds()));
    line.append(text, static_cast<std::size_t>(length));
}

} // namespace

void installLogFilter(const boost::log::filter& filter, Common2LogSeverity lowest) {
    // Statements stop asking only after the new filter stands, and start asking before it does: none that the
    // new filter lets pass is lost on the way.
    if (lowest < lowestLoggedSeverity.load(std::memory_order_relaxed)) {
        lowestLoggedSeverity.store(lowest, std::memory_order_relaxed);
    }
    logging::core::get()->set_filter(filter);
    lowestLoggedSeverity.store(lowest, std::memory_order_relaxed);
}

void removeLogFilter() {
    lowestLoggedSeverity.store(DBG_TRACE, std::memory_order_relaxed);
    logging::core::get()->reset_filter();
}

char severityMark(int severity) noexcept {
    constexpr std::string_view marks = "TIWE";
    const auto index = static_cast<std::size_t>(severity);
    return index < marks.size() ? marks[index] : 'U';
}

std::string formatLogLine(const boost::log::record_view& record) {
    std::string line;
    line.reserve(256);
    appendTimeStamp(line, record);
    line += ' ';
    appendText(line, record, logAttribute::source);
    line += '[';
    appendStreamed<logging::attributes::current_thread_id::value_type>(line, record, logAttribute::threadId);
    line += ", ";
    appendStreamed<logging::attributes::current_process_id::value_type>(line, record,
                                                                        logAttribute::processId);
    line += "] ";
    if (const auto severity = logging::extract<Common2LogSeverity>(logAttribute::severity, record)) {
        line += severityMark(severity.get());
    }
    line += "/ ";
    appendText(line, record, logAttribute::file);
    line += ':';
    if (const auto number = logging::extract<int>(logAttribute::line, record)) {
        line += std::to_string(number.get()); // a stream would group its digits if the host's locale does
    }
    line += ' ';
    appendText(line, record, logAttribute::function);
    line += "() ";
    appendText(line, record, logAttribute::message);
    return line;
}

} // namespace common2
