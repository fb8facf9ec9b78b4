#include "bench/Workload.h"

#include "common/logging/QuillLogConfig.h"
#include "common/logging/QuillLogging.h"
#include "common2/logging/LogCore.h"

#include <boost/log/core/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>

namespace bench {
namespace {

namespace sinks = boost::log::sinks;

class DroppingBackend : public sinks::basic_sink_backend<sinks::concurrent_feeding> {
public:
    void consume(const boost::log::record_view&) {}
};

/// A sink that drops every line. While there is one, the log core writes nothing to the console.
class DroppingSink {
public:
    DroppingSink() { boost::log::core::get()->add_sink(sink); }
    DroppingSink(const DroppingSink&) = delete;
    DroppingSink& operator=(const DroppingSink&) = delete;
    ~DroppingSink() { boost::log::core::get()->remove_sink(sink); }

private:
    boost::shared_ptr<sinks::sink> sink =
        boost::make_shared<sinks::unlocked_sink<DroppingBackend>>(boost::make_shared<DroppingBackend>());
};

/// Logging as the module sets it up, with its start-up filter and its attributes.
class DroppedLogging {
public:
    DroppedLogging() {
        LogChannelConfig startUp;
        startUp.global_severity = DBG_INFO;
        common2::installLogFilter(startUp, startUp.lowestSeverity());
    }

private:
    DroppingSink sink;
    QuillBaseLogging logging{""};
};

template <Common2LogSeverity Severity>
class Line final : public Workload {
public:
    void step() override {
        COMMON2_LOG(Severity, "PresentationPluginImpl::updateTileStatusStrings")
            << "Tile Status updated to: " << status;
    }

private:
    DroppedLogging logging;
    std::string status = "Wren Gate is active.";
};

/// What a step costs that does nothing.
class Nothing final : public Workload {
public:
    void step() override {}
};

} // namespace

std::vector<WorkloadEntry> logWorkloads() {
    return {entryOf<Nothing>("nothing"), entryOf<Line<DBG_TRACE>>("log-dropped"),
            entryOf<Line<DBG_WARN>>("log-accepted")};
}

} // namespace bench
