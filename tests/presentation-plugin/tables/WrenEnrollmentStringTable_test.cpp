#include "presentation-plugin/tables/WrenEnrollmentStringTable.h"

#include "tests/presentation-plugin/tables/ProgressFlags.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace {

struct EnrollmentRow {
    WrenEnrollmentStringId id;
    int number;
    const char* tile_message;
    const char* tile_title;
    const char* error_title;
    const char* error_message;
    const char* flags; ///< hidden and disabled of enroll, cancel and details
};

// clang-format off
constexpr EnrollmentRow enrollmentRows[] = {
    {ENROLL_DEFAULT, 0, "Enrolling...", "Enrollment error", "Internal Error", "An internal error occurred. Contact your IT help desk.", "111111"},
    {ENROLL_INITIATING, 1, "Enrolling...", "Enrolling", "", "", "011111"},
    {ENROLL_CANCELLING, 2, "Cancelling enrollment process. Please wait...", "Cancelling enrollment", "", "", "110111"},
    {ENROLL_IN_PROGRESS, 3, "Enrolling...", "Enrolling", "", "", "110011"},
    {ENROLL_AUTH_DONE, 4, "Enrolling...", "Enrolling", "", "", "111111"},
    {ENROLL_COMPLETE, 5, "Enrollment complete. Please wait...", "Enrollment complete", "", "", "111111"},
    {ENROLL_CANCELLED, 6, "Enrollment cancelled.", "Enrollment cancelled", "", "", "111111"},
    {ENROLL_INTERNAL_ERROR, 7, "Enrolling...", "Enrollment error", "Internal Error", "An internal error occurred. Contact your IT help desk.", "111111"},
    {ENROLL_INITIALIZATION_ERROR, 8, "Enrolling...", "Enrollment error", "Initialization error", "Unable to initialize enrollment. Contact your IT help desk.", "111111"},
    {ENROLL_AUTHENTICATION_ERROR, 9, "Enrolling...", "Enrollment error", "Authentication error", "Unable to verify your identity. Contact your IT help desk.", "111111"},
    {ENROLL_DEVICE_REGISTRATION_ERROR, 10, "Enrolling...", "Enrollment error", "Device Registration error", "Failed to register your device. Contact your IT help desk.", "111111"},
    {ENROLL_POSTURE_REGISTRATION_ERROR, 11, "Enrolling...", "Enrollment error", "Posture Registration error", "Failed to register with Plover Desktop. Contact your IT help desk.", "111111"},
    {ENROLL_CERTIFICATE_ERROR, 12, "Enrolling...", "Enrollment error", "Certificate Registration error", "Failed to obtain the enrollment certificate. Contact your IT help desk.", "111111"},
    {ENROLL_SERVER_COMMUNICATION_ERROR, 13, "Enrolling...", "Enrollment error", "Server Communication error", "Enrollment service is not responding. Contact your IT help desk.", "111111"},
    {ENROLL_SERVER_CERTIFICATE_ERROR, 14, "Enrolling...", "Enrollment error", "Server Certificate error", "Failed to verify enrollment server certificate. Contact your IT help desk.", "111111"},
    {ENROLL_NO_HARDWARE_SECURITY_ERROR, 15, "Enrolling...", "Enrollment error", "TPM Error", "Failed to communicate with Trusted Platform Module (TPM) on your device. Contact your IT help desk.", "111111"},
};
// clang-format on

TEST(WrenEnrollmentStringTable, HoldsEveryTextAndFlagOfEveryRow) {
    for (const EnrollmentRow& row : enrollmentRows) {
        SCOPED_TRACE(row.number);
        EXPECT_EQ(row.id, row.number);
        const WrenProgressStrings_t& entry = WrenEnrollmentStringTable::GetEntry(row.id);
        EXPECT_STREQ(entry.tile_message, row.tile_message);
        EXPECT_STREQ(entry.tile_title, row.tile_title);
        EXPECT_STREQ(entry.error_title, row.error_title);
        EXPECT_STREQ(entry.error_message, row.error_message);
        EXPECT_EQ(test::flagsOf(entry), row.flags);
    }
    EXPECT_EQ(std::size(enrollmentRows), 16u);
}

TEST(WrenEnrollmentStringTable, IdsBeyondTheTableAreLoggedAndGetRowZero) {
    for (const int id : {16, 255}) {
        const test::LogCapture capture;
        EXPECT_EQ(&WrenEnrollmentStringTable::GetEntry(static_cast<WrenEnrollmentStringId>(id)),
                  &WrenEnrollmentStringTable::GetEntry(ENROLL_DEFAULT));
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].message, "Unexpected string table lookup with id=" + std::to_string(id));
        EXPECT_EQ(records[0].function, "WrenEnrollmentStringTable::GetEntry");
    }
}

} // namespace
