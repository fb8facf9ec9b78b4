#include "host/HostCallbacks.h"

#include <utility>

namespace host {
namespace {

template <class Object>
std::uintptr_t contextOf(Object* object) {
    return reinterpret_cast<std::uintptr_t>(object);
}

template <class Object>
Object& behind(std::uintptr_t context) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the context of a C record is a word
    return *reinterpret_cast<Object*>(context);
}

std::int32_t notify(std::uintptr_t context, std::uintptr_t hostHandle, const char* xml) {
    return behind<HostCallbacks>(context).Notify(hostHandle, xml);
}

std::int32_t stopDone(std::uintptr_t context, std::uintptr_t hostHandle) {
    return behind<HostCallbacks>(context).StopDone(hostHandle);
}

std::int32_t translate1(std::uintptr_t context, std::uintptr_t first, std::uintptr_t second,
                        std::uintptr_t third) {
    return behind<HostTranslator>(context).TranslatorOperation1(first, second, third);
}

std::int32_t translate2(std::uintptr_t context, std::uintptr_t first, std::uintptr_t second,
                        std::uintptr_t third) {
    return behind<HostTranslator>(context).TranslatorOperation2(first, second, third);
}

} // namespace

HostCallbacks::HostCallbacks(NoticeHandler onNotice, StopDoneHandler onStopDone)
    : noticeHandler(std::move(onNotice))
    , stopDoneHandler(std::move(onStopDone))
    , cRecord{contextOf(this), &notify, &stopDone} {}

std::int32_t HostCallbacks::Notify(std::uintptr_t hostHandle, const char* xml) {
    noticeHandler(hostHandle, xml);
    return 0;
}

std::int32_t HostCallbacks::StopDone(std::uintptr_t hostHandle) {
    stopDoneHandler(hostHandle);
    return 0;
}

HostTranslator::HostTranslator()
    : cRecord{contextOf(this), &translate1, &translate2} {}

std::int32_t HostTranslator::TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) {
    return 0;
}

std::int32_t HostTranslator::TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) {
    return 0;
}

} // namespace host
