#include "common2/logging/PlatformLogSink.h"

#include "common2/logging/LogCore.h"

#include <windows.h>

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/utility/exception_handler.hpp>
#include <boost/make_shared.hpp>

namespace common2 {
namespace {

namespace logging = boost::log;
namespace sinks = boost::log::sinks;

std::wstring toWide(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    const int units = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), units);
    return wide;
}

constexpr DWORD eventId = 0x45010001;

/// A longer text makes the whole report fail.
constexpr std::size_t mostUnitsOfAnEvent = 31'839;

/// Cuts a line to what an event can hold, between characters.
void cutForEvent(std::wstring& line) {
    if (line.size() > mostUnitsOfAnEvent) {
        line.resize(mostUnitsOfAnEvent - (IS_HIGH_SURROGATE(line[mostUnitsOfAnEvent - 1]) ? 1 : 0));
    }
}

WORD eventTypeOf(const logging::record_view& record) {
    const auto severity = logging::extract<Common2LogSeverity>(logAttribute::severity, record);
    if (severity && severity.get() == DBG_WARN) {
        return EVENTLOG_WARNING_TYPE;
    }
    return severity && severity.get() == DBG_ERROR ? EVENTLOG_ERROR_TYPE : EVENTLOG_INFORMATION_TYPE;
}

/// Writes to the application event log of this machine. It formats by itself, since the library's formatting
/// frontend would leave something of this module on each thread that ever logged.
class EventLogBackend : public sinks::basic_sink_backend<sinks::concurrent_feeding> {
public:
    explicit EventLogBackend(const std::string& sourceName)
        : source(::RegisterEventSourceW(nullptr, toWide(sourceName).c_str())) {}
    EventLogBackend(const EventLogBackend&) = delete;
    EventLogBackend& operator=(const EventLogBackend&) = delete;
    ~EventLogBackend() {
        if (source) {
            ::DeregisterEventSource(source);
        }
    }

    void consume(const logging::record_view& record) {
        if (source) {
            std::wstring line = toWide(formatLogLine(record));
            cutForEvent(line);
            const wchar_t* strings[] = {line.c_str()};
            ::ReportEventW(source, eventTypeOf(record), 0, eventId, nullptr, 1, 0, strings, nullptr);
        }
    }

private:
    HANDLE source; ///< null where there is no such log to be had: nothing is written then
};

} // namespace

boost::shared_ptr<sinks::sink> makePlatformLogSink(const std::string& sourceName) {
    auto sink = boost::make_shared<sinks::synchronous_sink<EventLogBackend>>(
        boost::make_shared<EventLogBackend>(sourceName));
    sink->set_exception_handler(logging::make_exception_suppressor());
    return sink;
}

} // namespace common2
