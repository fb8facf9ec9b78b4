#include "host/BackendControls.h"
#include "host/Commands.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/SessionComparison.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"
#include "host/SessionReport.h"
#include "host/SessionRunner.h"
#include "host/TimeZone.h"

#include <boost/json/parse.hpp>

#include <iostream>
#include <sstream>

namespace host {
namespace {

namespace json = boost::json;

std::vector<json::object> outputsOf(const std::string& recording) {
    std::vector<json::object> outputs;
    std::istringstream lines(recording);
    for (std::string line; std::getline(lines, line);) {
        json::object fields = json::parse(line).as_object();
        if (fields.contains("out")) {
            outputs.push_back(std::move(fields));
        }
    }
    return outputs;
}

std::vector<json::object> expectedOf(const Session& session) {
    std::vector<json::object> outputs;
    for (const SessionExpectation& expectation : session.expectations) {
        outputs.push_back(expectation.output);
    }
    maskTimeStamps(outputs);
    return outputs;
}

std::string runRecorded(const Session& session, const ScriptOptions& options) {
    std::ostringstream recording;
    SessionRecorder recorder(recording);
    const LogTap log([&recorder](const LogRecord& record) { recorder.log(record); });
    const PluginModule module = loadModule(options.module, options.logLevel);
    const BackendControls backend;
    SessionRunner(module, backend, recorder, options.onlyInterface).run(session);
    return recording.str();
}

} // namespace

bool replaySession(const ScriptOptions& options) {
    const Session session = readSession(options.file);
    if (const auto zone = session.timeZone()) {
        setTimeZone(*zone);
    }
    const std::vector<json::object> actual = outputsOf(runRecorded(session, options));
    const auto difference = firstDifference(expectedOf(session), actual);
    std::cout << (difference ? reportOf(*difference, session, actual)
                             : session.name + ": " + std::to_string(actual.size()) + " outputs as expected\n")
              << std::flush;
    return !difference;
}

} // namespace host
