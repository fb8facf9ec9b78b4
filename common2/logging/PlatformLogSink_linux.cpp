#include "common2/logging/PlatformLogSink.h"

#include "common2/logging/LogCore.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/utility/exception_handler.hpp>
#include <boost/make_shared.hpp>

#include <syslog.h>
#include <utility>

namespace common2 {
namespace {

namespace logging = boost::log;
namespace sinks = boost::log::sinks;

int priorityOf(const logging::record_view& record) {
    const auto severity = logging::extract<Common2LogSeverity>(logAttribute::severity, record);
    if (!severity) {
        return LOG_INFO;
    }
    switch (severity.get()) {
    case DBG_TRACE:
        return LOG_DEBUG;
    case DBG_WARN:
        return LOG_WARNING;
    case DBG_ERROR:
        return LOG_ERR;
    case DBG_INFO:
        break;
    }
    return LOG_INFO;
}

/// Writes to syslog under an ident of its own, which libc refers to until `closelog`.
///
/// It formats by itself: the library's formatting frontend would keep a stream for each thread that ever
/// logged, whose destructor lies in this module and would run when such a thread ends, after the module was
/// unloaded.
class SyslogBackend : public sinks::basic_sink_backend<sinks::synchronized_feeding> {
public:
    explicit SyslogBackend(std::string sourceName)
        : ident(std::move(sourceName)) {
        ::openlog(ident.c_str(), LOG_NDELAY, LOG_USER);
    }
    SyslogBackend(const SyslogBackend&) = delete;
    SyslogBackend& operator=(const SyslogBackend&) = delete;
    ~SyslogBackend() { ::closelog(); }

    void consume(const logging::record_view& record) {
        ::syslog(priorityOf(record), "%s", formatLogLine(record).c_str());
    }

private:
    std::string ident;
};

} // namespace

boost::shared_ptr<sinks::sink> makePlatformLogSink(const std::string& sourceName) {
    auto sink = boost::make_shared<sinks::synchronous_sink<SyslogBackend>>(
        boost::make_shared<SyslogBackend>(sourceName));
    sink->set_exception_handler(logging::make_exception_suppressor());
    return sink;
}

} // namespace common2
