/// What the controls on screen stand for.
#pragma once

#include "common2/util/Mutex.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

/// The kind of a UI event.
enum class EventStoreId : std::uint32_t {
    ENROLL_ACTION = 0,
    ENROLL_TOAST_ACTION = 1,
    ENROLL_CANCEL_ACTION = 2,
    UNENROLL_ACTION = 3,
    CONFIG_SYNC_ACTION = 4,
    ENROLLMENT_BROWSER_END_URL_REACHED = 5,
    ENROLLMENT_BROWSER_CLOSE = 6,
    ENROLLMENT_BROWSER_ERROR = 7,
    DATAPLANE_AUTH_BROWSER_END_URL_REACHED = 8,
    DATAPLANE_AUTH_BROWSER_CLOSE = 9,
    DATAPLANE_AUTH_BROWSER_ERROR = 10,
    ALERT_BROWSER_CLOSE = 11,
    ALERT_BROWSER_ERROR = 12,
    ERROR_DETAILS_ACTION = 13,
    ERROR_DETAILS_TOAST_ACTION = 14,
    AUTH_VERIFY_ACTION = 15,
    AUTH_VERIFY_TOAST_ACTION = 16,
    ERROR_POPUP_CLOSE = 17,
    LOCAL_BROWSE_EVENT = 18,
    EVENT_INVALID = 19,
};

/// The kind's name as the host's log shows it; empty for a value outside the enumeration.
std::string_view eventStoreIdName(EventStoreId id) noexcept;

/// Maps the ids of controls to the kinds of their events. Controls of the main screen are never forgotten;
/// those of a dialog go away with it.
///
/// Any thread may call any operation at any time: events are looked up without the plugin's mutex while
/// rendering adds controls under it. No operation calls out.
class CEventStore {
public:
    /// Makes `controlId` known, overwriting what it stood for. A null `controlId` does nothing.
    /// @param dialogId the dialog that the control belongs to; null for the main screen
    void Add(const char* controlId, EventStoreId id, const char* dialogId);
    void Add(const std::string& controlId, EventStoreId id, const char* dialogId);

    /// Forgets a dialog with all its controls. Null does nothing.
    void Remove(const char* dialogId);

    /// What the control stands for: on the main screen, else in the first dialog, by ascending id, that knows
    /// it. `EVENT_INVALID` for null and where nobody knows it.
    EventStoreId Lookup(const char* controlId) const;

private:
    using ControlEvents = std::map<std::string, EventStoreId, std::less<>>;

    mutable common2::SharedMutex mutex; ///< held within an operation only
    ControlEvents controlEvents COMMON2_GUARDED_BY(mutex);
    std::map<std::string, ControlEvents, std::less<>> dialogEvents COMMON2_GUARDED_BY(mutex);
};
