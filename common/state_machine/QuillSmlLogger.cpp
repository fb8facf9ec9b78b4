#include "common/state_machine/QuillSmlLogger.h"

namespace {

/// Where the trace says that it comes from. Support tools know its lines by file and line number, so both
/// are constants and not this file's own.
constexpr std::string_view traceFile = "state_machine/QuillSmlLogger";
constexpr int processEventLine = 18;
constexpr int stateChangeLine = 25;

} // namespace

void QuillSmlLogger_t::writeProcessEvent(std::string_view machine, std::string_view event) {
    COMMON2_LOG_AT(DBG_TRACE, traceFile, processEventLine, "QuillSmlLogger_t::log_process_event")
        << '[' << machine << "][process_event] " << event;
}

void QuillSmlLogger_t::writeStateChange(std::string_view machine, std::string_view source,
                                        std::string_view target) {
    COMMON2_LOG_AT(DBG_TRACE, traceFile, stateChangeLine, "QuillSmlLogger_t::log_state_change")
        << '[' << machine << "][transition] " << source << " -> " << target;
}

QuillSmlLogger_t& quillSmlLogger() {
    static QuillSmlLogger_t logger;
    return logger;
}
