/// The machine's trace: one log record for every event that a machine receives and every change of state.
#pragma once

#include "common/state_machine/SmTypeName.h"
#include "common2/logging/Common2Loggers.h"

#include <string_view>

/// The logger policy of the machine. It has no data; one object serves the whole process. Each hook writes
/// one record of severity 0, or costs one comparison where the filter drops that.
class QuillSmlLogger_t {
public:
    /// Whether a hook would write anything now.
    bool isListening() const noexcept { return common2::logMayPass(DBG_TRACE); }

    template <class Machine, class Event>
    void log_process_event(const Event&) {
        if (common2::logMayPass(DBG_TRACE)) {
            writeProcessEvent(smTypeNameOf<Machine>, smTypeNameOf<Event>);
        }
    }

    template <class Machine, class Source, class Target>
    void log_state_change(const Source&, const Target&) {
        if (common2::logMayPass(DBG_TRACE)) {
            writeStateChange(smTypeNameOf<Machine>, smTypeNameOf<Source>, smTypeNameOf<Target>);
        }
    }

    template <class Machine, class Guard, class Event>
    void log_guard(const Guard&, const Event&, bool) {}

    template <class Machine, class Action, class Event>
    void log_action(const Action&, const Event&) {}

private:
    static void writeProcessEvent(std::string_view machine, std::string_view event);
    static void writeStateChange(std::string_view machine, std::string_view source, std::string_view target);
};

/// The process-wide logger of all machines.
QuillSmlLogger_t& quillSmlLogger();
