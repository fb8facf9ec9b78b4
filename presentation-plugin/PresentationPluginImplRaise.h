/// How the plugin raises an event: for the translation units of PresentationPluginImpl only.
#pragma once

#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/PresentationPluginImpl.h"

template <class Event>
bool PresentationPluginImpl::raise(const Event& event, std::string_view function, const char* file,
                                   int line) {
    if (sm.process_event(event)) {
        return true;
    }
    COMMON2_LOG_AT(DBG_WARN, common2::nameOfSource(file), line, function) << "Unexpected state transition";
    return false;
}
