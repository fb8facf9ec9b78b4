/// The log of what the presentation plugins of this family have in common.
#pragma once

#include "common2/logging/Common2Loggers.h"

#include <string_view>

/// How much a line tells, in the family's own count.
enum PresentationPluginLogLevel : int {
    presentationPluginLogError = 0,
    presentationPluginLogInformation = 2,
};

/// A log line at the calling place: the message is a printf format with its arguments.
#define PRESENTATION_PLUGIN_LOG(level, function, ...)                                                        \
    logPresentationPlugin(function, ::common2::sourceName(__FILE__), __LINE__, level, __VA_ARGS__)

/// Writes one line to the module's log, at the severity that stands for `level`. Any thread; never throws.
/// @param function qualified name of the operation that logs
/// @param file name of the source file, without folders and ending
/// @param format of printf; the message is cut at 511 bytes
[[gnu::format(printf, 5, 6)]] void logPresentationPlugin(std::string_view function, std::string_view file,
                                                         int line, PresentationPluginLogLevel level,
                                                         const char* format, ...) noexcept;
