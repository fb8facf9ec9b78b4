#include "presentation-plugin/tables/WrenUnenrollmentStringTable.h"

#include "tests/presentation-plugin/tables/ProgressFlags.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace {

struct UnenrollmentRow {
    WrenUnenrollmentStringId id;
    int number;
    const char* tile_message;
    const char* tile_title;
    const char* error_title;
    const char* error_message;
    const char* flags; ///< hidden and disabled of enroll, cancel and details
};

// clang-format off
constexpr UnenrollmentRow unenrollmentRows[] = {
    {UNENROLL_DEFAULT, 0, "Unenrolling...", "Unenrolling", "Unenrollment error", "An internal error has occurred.", "111111"},
    {UNENROLL_INITIATING, 1, "Unenrolling...", "Unenrolling", "", "", "011111"},
    {UNENROLL_IN_PROGRESS, 2, "Unenrolling...", "Unenrolling", "", "", "110111"},
    {UNENROLL_COMPLETE, 3, "Unenrollment complete. Please wait...", "Unenrollment complete", "", "", "110011"},
    {UNENROLL_INTERNAL_ERROR, 4, "Unenrolling...", "Unenrolling", "Unenrollment error", "An internal error has occurred.", "111111"},
};
// clang-format on

TEST(WrenUnenrollmentStringTable, HoldsEveryTextAndFlagOfEveryRow) {
    for (const UnenrollmentRow& row : unenrollmentRows) {
        SCOPED_TRACE(row.number);
        EXPECT_EQ(row.id, row.number);
        const WrenProgressStrings_t& entry = WrenUnenrollmentStringTable::GetEntry(row.id);
        EXPECT_STREQ(entry.tile_message, row.tile_message);
        EXPECT_STREQ(entry.tile_title, row.tile_title);
        EXPECT_STREQ(entry.error_title, row.error_title);
        EXPECT_STREQ(entry.error_message, row.error_message);
        EXPECT_EQ(test::flagsOf(entry), row.flags);
    }
    EXPECT_EQ(std::size(unenrollmentRows), 5u);
}

TEST(WrenUnenrollmentStringTable, IdsBeyondTheTableAreLoggedAndGetRowZero) {
    for (const int id : {5, 255}) {
        const test::LogCapture capture;
        EXPECT_EQ(&WrenUnenrollmentStringTable::GetEntry(static_cast<WrenUnenrollmentStringId>(id)),
                  &WrenUnenrollmentStringTable::GetEntry(UNENROLL_DEFAULT));
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].message, "Unexpected string table lookup with id=" + std::to_string(id));
        EXPECT_EQ(records[0].function, "WrenUnenrollmentStringTable::GetEntry");
    }
}

} // namespace
