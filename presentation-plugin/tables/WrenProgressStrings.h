/// What a row of the enrollment and unenrollment tables holds.
#pragma once

/// Texts are NUL-terminated and live as long as the process; one that a situation does not need is empty,
/// never null. The flags are the states of the tile's action buttons while the row is shown.
struct WrenProgressStrings_t {
    const char* tile_message = "";  ///< line on the main tile
    const char* tile_title = "";    ///< heading on the main tile
    const char* error_title = "";   ///< heading of the error popup
    const char* error_message = ""; ///< body of the error popup
    bool enroll_hidden = true;
    bool enroll_disabled = true;
    bool cancel_hidden = true;
    bool cancel_disabled = true;
    bool details_hidden = true;
    bool details_disabled = true;
};
