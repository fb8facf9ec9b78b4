#include "host/HostCallbacks.h"

#include <utility>

namespace host {

HostCallbacks::HostCallbacks(NoticeHandler onNotice, StopDoneHandler onStopDone)
    : noticeHandler(std::move(onNotice))
    , stopDoneHandler(std::move(onStopDone)) {}

std::int32_t HostCallbacks::Notify(std::uintptr_t hostHandle, const char* xml) {
    noticeHandler(hostHandle, xml);
    return 0;
}

std::int32_t HostCallbacks::StopDone(std::uintptr_t hostHandle) {
    stopDoneHandler(hostHandle);
    return 0;
}

std::int32_t HostTranslator::TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) {
    return 0;
}

std::int32_t HostTranslator::TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) {
    return 0;
}

} // namespace host
