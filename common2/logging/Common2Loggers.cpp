#include "common2/logging/Common2Loggers.h"

#include "common2/logging/LogCore.h"

#include <boost/log/attributes/attribute_value_impl.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record.hpp>
#include <boost/log/keywords/severity.hpp>
#include <boost/log/sources/severity_logger.hpp>

#include <memory>
#include <new>
#include <utility>

namespace common2 {
namespace {

namespace logging = boost::log;

using SeverityLogger = logging::sources::severity_logger_mt<Common2LogSeverity>;

/// The process-wide logger, made on first use.
SeverityLogger& severityLogger() {
    static SeverityLogger logger;
    return logger;
}

static_assert(sizeof(logging::record) == sizeof(void*));
static_assert(alignof(logging::record) == alignof(void*));

logging::record& recordIn(std::byte* storage) {
    return *std::launder(reinterpret_cast<logging::record*>(storage));
}

template <class Value>
void attach(logging::record& record, const char* name, Value value) {
    record.attribute_values().insert(name, logging::attributes::make_attribute_value(std::move(value)));
}

} // namespace

LogStatement::LogStatement(int severity, std::string_view file, int line,
                           std::string_view function) noexcept {
    try {
        logging::record opened = severityLogger().open_record(logging::keywords::severity =
                                                                  static_cast<Common2LogSeverity>(severity));
        if (!opened) {
            return;
        }
        attach(opened, logAttribute::line, line);
        attach(opened, logAttribute::file, std::string(logFileName(file)));
        attach(opened, logAttribute::function, std::string(function));
        new (record) logging::record(std::move(opened));
        open = true;
    } catch (...) {
        // A record that cannot be opened is lost; whoever logs must not be.
    }
}

LogStatement& LogStatement::operator<<(std::string_view text) noexcept {
    try {
        message.append(text);
    } catch (...) {
        // The line goes out without this piece.
    }
    return *this;
}

LogStatement::~LogStatement() {
    if (!open) {
        return;
    }
    logging::record& opened = recordIn(record);
    try {
        attach(opened, logAttribute::message, std::move(message));
        logging::core::get()->push_record(std::move(opened));
    } catch (...) {
        // Trouble of a sink stays with the sink.
    }
    std::destroy_at(&opened);
}

} // namespace common2
