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

/// The one without a lock: nothing changes the logger once it is made, and the severity is each thread's own.
using SeverityLogger = logging::sources::severity_logger<Common2LogSeverity>;

/// The process-wide logger, made on first use.
SeverityLogger& severityLogger() {
    static SeverityLogger logger;
    return logger;
}

/// Names resolved once: the library looks a name up under a lock.
struct AttributeNames {
    logging::attribute_name file{logAttribute::file};
    logging::attribute_name line{logAttribute::line};
    logging::attribute_name function{logAttribute::function};
    logging::attribute_name message{logAttribute::message};
};

const AttributeNames& attributeNames() {
    static const AttributeNames names;
    return names;
}

/// Holds most messages.
constexpr std::size_t usualMessageSize = 120;

static_assert(sizeof(logging::record) == sizeof(void*));
static_assert(alignof(logging::record) == alignof(void*));

logging::record& recordIn(std::byte* storage) {
    return *std::launder(reinterpret_cast<logging::record*>(storage));
}

template <class Value>
void attach(logging::record& record, logging::attribute_name name, Value value) {
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
        const AttributeNames& names = attributeNames();
        attach(opened, names.line, line);
        attach(opened, names.file, std::string(logFileName(file)));
        attach(opened, names.function, std::string(function));
        message.reserve(usualMessageSize);
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
        attach(opened, attributeNames().message, std::move(message));
        logging::core::get()->push_record(std::move(opened));
    } catch (...) {
        // Trouble of a sink stays with the sink.
    }
    std::destroy_at(&opened);
}

} // namespace common2
