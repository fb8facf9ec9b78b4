#include "tests/backend-sim/ServiceTest.h"

#include "tests/backend-sim/Decoding.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::Lines;
using ::testing::ElementsAre;

/// One way in which an enrollment can end: the word and what the plugin makes of it.
struct Failure {
    const char* word;
    EnrollmentSubstatus substatus;
    const char* name;
};

constexpr Failure failures[] = {
    {"cancelled", EnrollmentSubstatus::Cancelled, "Cancelled"},
    {"invalid_choice_id", EnrollmentSubstatus::InvalidChoiceId, "InvalidChoiceId"},
    {"invalid_enrollment_id", EnrollmentSubstatus::InvalidEnrollmentId, "InvalidEnrollmentId"},
    {"internal_error", EnrollmentSubstatus::InternalError, "InternalError"},
    {"initialization_error", EnrollmentSubstatus::InitializationError, "InitializationError"},
    {"user_authentication_error", EnrollmentSubstatus::UserAuthenticationError, "UserAuthenticationError"},
    {"device_registration_error", EnrollmentSubstatus::DeviceRegistrationError, "DeviceRegistrationError"},
    {"posture_registration_error", EnrollmentSubstatus::PostureRegistrationError, "PostureRegistrationError"},
    {"certificate_enrollment_error", EnrollmentSubstatus::CertificateEnrollmentError,
     "CertificateEnrollmentError"},
    {"server_communication_error", EnrollmentSubstatus::ServerCommunicationError, "ServerCommunicationError"},
    {"server_certificate_error", EnrollmentSubstatus::ServerCertificateError, "ServerCertificateError"},
    {"posture_no_hardware_security_error", EnrollmentSubstatus::PostureNoHardwareSecurityError,
     "PostureNoHardwareSecurityError"},
};

class EnrollmentFailure : public test::ServiceTest, public ::testing::WithParamInterface<Failure> {
protected:
    std::string ended(const std::string& id, const char* status) const {
        return "enrollment " + id + " " + status + "/" + GetParam().name;
    }
};

TEST_P(EnrollmentFailure, BeforeStartedItIsAnError) {
    setFault("enrollment_request", GetParam().word);
    enroll();
    const auto all = documents();
    ASSERT_EQ(all.size(), 1u);
    const auto notification = test::decodedEnrollmentStatus(all[0].json);
    EXPECT_EQ(notification.status, EnrollmentStatus::Error);
    EXPECT_EQ(notification.substatus, GetParam().substatus);
    EXPECT_EQ(runningId(), "");
}

TEST_P(EnrollmentFailure, AfterStarted) {
    setFault("enrollment_started", GetParam().word);
    enroll();
    const Lines lines = sent();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0], ::testing::EndsWith("Started/None"));
    EXPECT_THAT(lines[1], ::testing::EndsWith(" Complete/" + std::string(GetParam().name)));
}

TEST_P(EnrollmentFailure, WhileTheUserLogsIn) {
    set(R"({"delays":{"login_failure":10}})");
    setFault("enrollment_login", GetParam().word);
    const std::string id = atLogin();
    pass(9);
    EXPECT_EQ(stage(), "logging_in");
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(ended(id, "Complete")));
    EXPECT_EQ(enrollmentCookie(id), "");
}

TEST_P(EnrollmentFailure, AfterTheCookie) {
    setFault("enrollment_cookie", GetParam().word);
    const std::string id = atLogin();
    reply(id, enrollmentCookie(id));
    EXPECT_THAT(sent(), ElementsAre(ended(id, "Complete")));
    EXPECT_EQ(state().at("scenario").at("device").at("enrolled"), false);
}

TEST_P(EnrollmentFailure, InPlaceOfCancelled) {
    setFault("enrollment_cancel", GetParam().word);
    const std::string id = atLogin();
    cancel(id);
    EXPECT_THAT(sent(), ElementsAre(ended(id, "Complete")));
}

TEST_P(EnrollmentFailure, OfAReEnrollmentLeavesTheEnrollment) {
    const std::string id = enrolled();
    setFault("enrollment_cookie", GetParam().word);
    reEnroll(id);
    reply(id, enrollmentCookie(id));
    EXPECT_EQ(sent().back(), ended(id, "Complete"));
    EXPECT_EQ(state().at("scenario").at("device").at("enrolled"), true);
}

INSTANTIATE_TEST_SUITE_P(Substatuses, EnrollmentFailure, ::testing::ValuesIn(failures),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
