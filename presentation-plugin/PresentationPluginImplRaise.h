/// How the plugin raises an event: for the translation units of PresentationPluginImpl only.
#pragma once

#include "presentation-plugin/PresentationPluginImpl.h"

template <class Event>
bool PresentationPluginImpl::raise(const Event& event, std::string_view function, int line) {
    if (sm.process_event(event)) {
        return true;
    }
    COMMON2_LOG_AT(DBG_WARN, "PresentationPluginImpl", line, function) << "Unexpected state transition";
    return false;
}
