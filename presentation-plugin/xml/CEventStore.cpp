#include "presentation-plugin/xml/CEventStore.h"

#include <array>

namespace {

constexpr std::array<std::string_view, 20> names{
    "ENROLL_ACTION",
    "ENROLL_TOAST_ACTION",
    "ENROLL_CANCEL_ACTION",
    "UNENROLL_ACTION",
    "CONFIG_SYNC_ACTION",
    "ENROLLMENT_BROWSER_END_URL_REACHED",
    "ENROLLMENT_BROWSER_CLOSE",
    "ENROLLMENT_BROWSER_ERROR",
    "DATAPLANE_AUTH_BROWSER_END_URL_REACHED",
    "DATAPLANE_AUTH_BROWSER_CLOSE",
    "DATAPLANE_AUTH_BROWSER_ERROR",
    "ALERT_BROWSER_CLOSE",
    "ALERT_BROWSER_ERROR",
    "ERROR_DETAILS_ACTION",
    "ERROR_DETAILS_TOAST_ACTION",
    "AUTH_VERIFY_ACTION",
    "AUTH_VERIFY_TOAST_ACTION",
    "ERROR_POPUP_CLOSE",
    "LOCAL_BROWSE_EVENT",
    "EVENT_INVALID",
};
static_assert(names.size() == static_cast<std::size_t>(EventStoreId::EVENT_INVALID) + 1);

} // namespace

std::string_view eventStoreIdName(EventStoreId id) noexcept {
    const auto index = static_cast<std::size_t>(id);
    return index < names.size() ? names[index] : std::string_view();
}

void CEventStore::Add(const char* controlId, EventStoreId id, const char* dialogId) {
    if (!controlId) {
        return;
    }
    const common2::MutexLock lock(mutex);
    ControlEvents& events = dialogId ? dialogEvents[dialogId] : controlEvents;
    events.insert_or_assign(controlId, id);
}

void CEventStore::Add(const std::string& controlId, EventStoreId id, const char* dialogId) {
    Add(controlId.c_str(), id, dialogId);
}

void CEventStore::Remove(const char* dialogId) {
    if (!dialogId) {
        return;
    }
    const common2::MutexLock lock(mutex);
    if (const auto found = dialogEvents.find(std::string_view(dialogId)); found != dialogEvents.end()) {
        dialogEvents.erase(found);
    }
}

EventStoreId CEventStore::Lookup(const char* controlId) const {
    if (!controlId) {
        return EventStoreId::EVENT_INVALID;
    }
    const std::string_view wanted(controlId);
    const common2::ReaderLock lock(mutex);
    if (const auto found = controlEvents.find(wanted); found != controlEvents.end()) {
        return found->second;
    }
    for (const auto& [dialog, events] : dialogEvents) {
        if (const auto found = events.find(wanted); found != events.end()) {
            return found->second;
        }
    }
    return EventStoreId::EVENT_INVALID;
}
