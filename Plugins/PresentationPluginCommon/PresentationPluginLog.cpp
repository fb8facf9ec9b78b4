#include "Plugins/PresentationPluginCommon/PresentationPluginLog.h"

#include <cstdarg>
#include <cstdio>

namespace {

constexpr int severityOf(PresentationPluginLogLevel level) {
    return level == presentationPluginLogError ? DBG_ERROR : DBG_INFO;
}

} // namespace

void logPresentationPlugin(std::string_view function, std::string_view file, int line,
                           PresentationPluginLogLevel level, const char* format, ...) noexcept {
    const int severity = severityOf(level);
    if (!common2::logMayPass(severity)) {
        return;
    }
    char message[512] = "";
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    COMMON2_LOG_AT(severity, file, line, function) << message;
}
