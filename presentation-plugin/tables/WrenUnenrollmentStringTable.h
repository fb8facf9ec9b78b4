/// The fixed texts of an unenrollment under way: tile, error popup and the tile's buttons.
#pragma once

#include "presentation-plugin/tables/WrenProgressStrings.h"

#include <cstdint>

/// Each numbers its row.
enum WrenUnenrollmentStringId : std::uint8_t {
    UNENROLL_DEFAULT,
    UNENROLL_INITIATING,
    UNENROLL_IN_PROGRESS,
    UNENROLL_COMPLETE,
    UNENROLL_INTERNAL_ERROR,
};

class WrenUnenrollmentStringTable {
public:
    /// The row of the id. An id beyond the table is logged and gets the row of UNENROLL_DEFAULT.
    static const WrenProgressStrings_t& GetEntry(WrenUnenrollmentStringId id);
};
