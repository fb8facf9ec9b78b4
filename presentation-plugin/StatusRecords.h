/// The records that statuses are decoded into.
#pragma once

#include "common/api/StatusNotification.h"

#include <array>
#include <memory>

/// Two records that take turns: one is cached, the other takes the next document, and keeps the storage of
/// its texts and lists for it. So a status that repeats the last one costs no allocation. Belongs to one
/// thread at a time.
class StatusRecords {
public:
    /// A record that nobody else holds, of whatever content.
    std::shared_ptr<StatusNotification_t> take();

    /// Lets go of both: whoever holds one is its only owner then. For records too large to be kept.
    void forget() noexcept { records = {}; }

private:
    std::array<std::shared_ptr<StatusNotification_t>, 2> records;
};
