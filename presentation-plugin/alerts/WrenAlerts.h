/// From the backend's latest records to the alerts that they amount to.
#pragma once

#include "common/api/DataplaneNotification.h"
#include "common/api/StatusNotification.h"
#include "presentation-plugin/alerts/WrenAlert.h"

#include <memory>

/// Derives the whole list, most urgent first. Reads nothing but its arguments, so that the same records give
/// an equal list.
/// @param status may be null, which gives an empty list
/// @param dataplane may be null
/// @param alertTime time of the alerts that have none of their own
WrenAlertList_t buildAlertList(const std::shared_ptr<const StatusNotification_t>& status,
                               const std::shared_ptr<const DataplaneNotification_t>& dataplane,
                               QuillTimePoint alertTime);
