/// What the plugin's local web pages show, as they read it: Base64 of one JSON object.
#pragma once

#include "presentation-plugin/alerts/WrenAlert.h"

#include <cstdint>
#include <string>
#include <string_view>

/// For the alert page: all alerts in their order and, if there are several, the list's own texts.
std::string buildAlertPayload(const WrenAlertList_t& list);

/// For the progress page of an enrollment.
/// @param percent how much is done
std::string buildProgressPayload(std::string_view title, std::uint32_t percent);
