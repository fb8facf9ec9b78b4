#include "presentation-plugin/PresentationPluginSm.h"

namespace PresentationPluginSm {

void writeAction(std::string_view action, int line, std::string_view told) {
    constexpr std::string_view callOperator = "::operator ()";
    std::string function;
    function.reserve(action.size() + callOperator.size());
    function.append(action).append(callOperator);
    COMMON2_LOG_AT(DBG_TRACE, "PresentationPluginSm", line, function) << "state machine action " << told;
}

} // namespace PresentationPluginSm
