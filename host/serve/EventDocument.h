/// What a host tells a plugin of its user.
#pragma once

#include "host/ScreenModel.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace host::serve {

/// An event document that names nothing but its event. @param eventId as the control's event attribute holds
/// it
std::string eventDocument(std::string_view eventId);

/// An attribute that a browser reports along with an event.
struct ReportedAttribute {
    std::string_view name;
    std::string_view value;
};

/// The event document of a browser: the event that its attribute `event` names, with the control that the
/// event's parameter asks for and what it has to report.
std::string browserReport(const ScreenControl& browser, const std::string& event,
                          std::initializer_list<ReportedAttribute> reported);

} // namespace host::serve
