#include "presentation-plugin/tables/WrenUnenrollmentStringTable.h"

#include "presentation-plugin/tables/StringTableLookup.h"

#include <array>

namespace {

/// All buttons are hidden and disabled but for what a row says.
constexpr std::array<WrenProgressStrings_t, 5> unenrollmentStrings{{
    // UNENROLL_DEFAULT
    {.tile_message = "Unenrolling...",
     .tile_title = "Unenrolling",
     .error_title = "Unenrollment error",
     .error_message = "An internal error has occurred."},
    // UNENROLL_INITIATING
    {.tile_message = "Unenrolling...", .tile_title = "Unenrolling", .enroll_hidden = false},
    // UNENROLL_IN_PROGRESS
    {.tile_message = "Unenrolling...", .tile_title = "Unenrolling", .cancel_hidden = false},
    // UNENROLL_COMPLETE
    {.tile_message = "Unenrollment complete. Please wait...",
     .tile_title = "Unenrollment complete",
     .cancel_hidden = false,
     .cancel_disabled = false},
    // UNENROLL_INTERNAL_ERROR
    {.tile_message = "Unenrolling...",
     .tile_title = "Unenrolling",
     .error_title = "Unenrollment error",
     .error_message = "An internal error has occurred."},
}};
static_assert(unenrollmentStrings.size() == UNENROLL_INTERNAL_ERROR + 1);

} // namespace

const WrenProgressStrings_t& WrenUnenrollmentStringTable::GetEntry(WrenUnenrollmentStringId id) {
    return stringTableRow(unenrollmentStrings, id, "WrenUnenrollmentStringTable::GetEntry");
}
