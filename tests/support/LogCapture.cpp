#include "tests/support/LogCapture.h"

#include "common2/logging/LogCore.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>

#include <functional>
#include <mutex>
#include <utility>

namespace test {
namespace {

namespace logging = boost::log;
namespace sinks = boost::log::sinks;

template <class Value>
Value attributeOf(const logging::record_view& record, const char* name, Value absent) {
    return logging::extract_or_default<Value>(name, record, std::move(absent));
}

} // namespace

struct LogCapture::State {
    mutable std::mutex mutex;
    std::vector<LoggedRecord> records;
    boost::shared_ptr<sinks::sink> sink;
};

namespace {

/// Hands each record to a function, on the thread that logs.
class Backend : public sinks::basic_sink_backend<sinks::concurrent_feeding> {
public:
    explicit Backend(std::function<void(LoggedRecord)> receiver)
        : receive(std::move(receiver)) {}

    void consume(const logging::record_view& record) {
        namespace names = common2::logAttribute;
        LoggedRecord caught;
        caught.severity =
            attributeOf<Common2LogSeverity>(record, names::severity, static_cast<Common2LogSeverity>(-1));
        caught.function = attributeOf<std::string>(record, names::function, "");
        caught.file = attributeOf<std::string>(record, names::file, "");
        caught.line = attributeOf<int>(record, names::line, 0);
        caught.message = attributeOf<std::string>(record, names::message, "");
        receive(std::move(caught));
    }

private:
    std::function<void(LoggedRecord)> receive;
};

} // namespace

LogCapture::LogCapture()
    : state(std::make_shared<State>()) {
    const auto keep = [kept = state.get()](LoggedRecord record) {
        const std::lock_guard lock(kept->mutex);
        kept->records.push_back(std::move(record));
    };
    state->sink = boost::make_shared<sinks::unlocked_sink<Backend>>(boost::make_shared<Backend>(keep));
    logging::core::get()->add_sink(state->sink);
}

LogCapture::~LogCapture() { logging::core::get()->remove_sink(state->sink); }

std::vector<LoggedRecord> LogCapture::records() const {
    const std::lock_guard lock(state->mutex);
    return state->records;
}

std::vector<std::string> LogCapture::messages() const {
    std::vector<std::string> texts;
    for (LoggedRecord& record : records()) {
        texts.push_back(std::move(record.message));
    }
    return texts;
}

std::vector<std::string> LogCapture::messages(int severity) const {
    std::vector<std::string> texts;
    for (LoggedRecord& record : records()) {
        if (record.severity == severity) {
            texts.push_back(std::move(record.message));
        }
    }
    return texts;
}

void LogCapture::clear() {
    const std::lock_guard lock(state->mutex);
    state->records.clear();
}

} // namespace test
