#include "host/BackendControls.h"
#include "host/Commands.h"
#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"
#include "host/SessionRunner.h"
#include "host/TimeZone.h"

#include <iostream>

namespace host {

void runScript(const ScriptOptions& options) {
    const Session session = readSession(options.file);
    if (const auto zone = session.timeZone()) {
        setTimeZone(*zone);
    }
    SessionRecorder recorder(std::cout);
    const LogTap log([&recorder](const LogRecord& record) { recorder.log(record); });
    const PluginModule module = loadModule(options.module, options.logLevel);
    const BackendControls backend;
    SessionRunner(module, backend, recorder, options.onlyInterface).run(session);
    if (!std::cout) {
        throw HostError("cannot write the outputs");
    }
}

} // namespace host
