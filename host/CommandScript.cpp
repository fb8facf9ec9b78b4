#include "host/BackendControls.h"
#include "host/Commands.h"
#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"
#include "host/SessionRunner.h"
#include "host/Text.h"
#include "host/TimeZone.h"
#include "host/strict/StrictHost.h"

#include <atomic>
#include <iostream>
#include <optional>

namespace host {

bool runScript(const ScriptOptions& options) {
    const Session session = readSession(options.file);
    if (const auto zone = session.timeZone()) {
        setTimeZone(*zone);
    }
    SessionRecorder recorder(std::cout);
    const LogTap log([&recorder](const LogRecord& record) { recorder.log(record); });
    const PluginModule module = loadModule(options.module, options.logLevel);
    const BackendControls backend;
    std::atomic<bool> isClean = true;
    std::optional<StrictHost> strict;
    if (options.isStrict) {
        strict.emplace([&](const Violation& violation) {
            isClean = false;
            std::cerr << "wren-host: " + printable(lineOf(violation)) + "\n";
        });
    }
    SessionRunner(module, backend, recorder, options.onlyInterface, strict ? &*strict : nullptr).run(session);
    if (!std::cout) {
        throw HostError("cannot write the outputs");
    }
    return isClean;
}

} // namespace host
