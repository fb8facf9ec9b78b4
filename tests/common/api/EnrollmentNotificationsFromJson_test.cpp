#include "common/api/QuillApiDefsUtil.h"
#include "common2/util/GlobalError.h"
#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/string.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

namespace json = boost::json;
using test::enrollmentAuthRequestDocument;
using test::enrollmentStatusDocument;
using test::unenrollmentStatusDocument;
using test::with;
using test::without;

template <class Record>
Record decoded(Record (*decode)(json::value, std::error_code&), const json::value& document) {
    std::error_code error = makeGlobalError(QuillApiResult::Eof); // stale: the decoder must clear it
    Record record = decode(document, error);
    EXPECT_FALSE(error) << document;
    return record;
}

EnrollmentStatusNotification_t decodedEnrollment(const json::value& document) {
    return decoded(EnrollmentStatusNotificationFromJson, document);
}

UnenrollmentStatusNotification_t decodedUnenrollment(const json::value& document) {
    return decoded(UnenrollmentStatusNotificationFromJson, document);
}

EnrollmentAuthRequest_t decodedAuthRequest(const json::value& document) {
    return decoded(EnrollmentAuthRequestFromJson, document);
}

/// The code, and a record with nothing in it.
template <class Record>
void expectFailure(Record (*decode)(json::value, std::error_code&), const json::value& document) {
    std::error_code error;
    EXPECT_EQ(decode(document, error), Record()) << document;
    EXPECT_EQ(error.value(), 1) << document;
    EXPECT_STREQ(error.category().name(), "global_error");
}

void expectEnrollmentFailure(const json::value& document) {
    expectFailure(EnrollmentStatusNotificationFromJson, document);
}

void expectUnenrollmentFailure(const json::value& document) {
    expectFailure(UnenrollmentStatusNotificationFromJson, document);
}

void expectAuthRequestFailure(const json::value& document) {
    expectFailure(EnrollmentAuthRequestFromJson, document);
}

const json::string nulText("ab\0cd", 5);
const std::string wholeNulText("ab\0cd", 5);

// Enrollment status

TEST(EnrollmentStatusNotificationFromJson, ReadsEveryField) {
    EXPECT_EQ(decodedEnrollment(enrollmentStatusDocument("complete", "success")),
              test::enrollmentStatus(EnrollmentStatus::Complete, EnrollmentSubstatus::Success));
}

TEST(EnrollmentStatusNotificationFromJson, EmptySubstatusIsNone) {
    const auto record = decodedEnrollment(
        json::parse(R"({"version":"1","status":"started","substatus":"","enrollment_id":"e"})"));
    EXPECT_EQ(record.version, "1");
    EXPECT_EQ(record.status, EnrollmentStatus::Started);
    EXPECT_EQ(record.substatus, EnrollmentSubstatus::None);
    EXPECT_EQ(record.enrollment_id, "e");
    EXPECT_EQ(record.enrollment_context, "");
}

TEST(EnrollmentStatusNotificationFromJson, EveryRequiredKeyIsRequired) {
    for (const char* place : {"/version", "/status", "/substatus", "/enrollment_id"}) {
        expectEnrollmentFailure(without(enrollmentStatusDocument(), place));
    }
}

TEST(EnrollmentStatusNotificationFromJson, RequiredTextsMustBeTexts) {
    for (const char* place : {"/version", "/status", "/enrollment_id"}) {
        expectEnrollmentFailure(with(enrollmentStatusDocument(), place, 1));
    }
}

TEST(EnrollmentStatusNotificationFromJson, AnythingButAnObjectFails) {
    for (const char* text : {"{}", "[]", "null", "\"text\"", "12"}) {
        expectEnrollmentFailure(json::parse(text));
    }
}

TEST(EnrollmentStatusNotificationFromJson, ReadsEveryStatus) {
    EXPECT_EQ(decodedEnrollment(enrollmentStatusDocument("error")).status, EnrollmentStatus::Error);
    EXPECT_EQ(decodedEnrollment(enrollmentStatusDocument("started")).status, EnrollmentStatus::Started);
    EXPECT_EQ(decodedEnrollment(enrollmentStatusDocument("complete")).status, EnrollmentStatus::Complete);
}

TEST(EnrollmentStatusNotificationFromJson, UnlistedStatusFails) {
    for (const char* status : {"Started", "unknown", "Unknown", "", "started "}) {
        expectEnrollmentFailure(enrollmentStatusDocument(status));
    }
}

TEST(EnrollmentStatusNotificationFromJson, ReadsEverySubstatus) {
    const struct {
        const char* literal;
        EnrollmentSubstatus value;
    } rows[] = {
        {"", EnrollmentSubstatus::None},
        {"success", EnrollmentSubstatus::Success},
        {"cancelled", EnrollmentSubstatus::Cancelled},
        {"invalid_choice_id", EnrollmentSubstatus::InvalidChoiceId},
        {"invalid_enrollment_id", EnrollmentSubstatus::InvalidEnrollmentId},
        {"internal_error", EnrollmentSubstatus::InternalError},
        {"initialization_error", EnrollmentSubstatus::InitializationError},
        {"user_authentication_error", EnrollmentSubstatus::UserAuthenticationError},
        {"device_registration_error", EnrollmentSubstatus::DeviceRegistrationError},
        {"posture_registration_error", EnrollmentSubstatus::PostureRegistrationError},
        {"certificate_enrollment_error", EnrollmentSubstatus::CertificateEnrollmentError},
        {"server_communication_error", EnrollmentSubstatus::ServerCommunicationError},
        {"server_certificate_error", EnrollmentSubstatus::ServerCertificateError},
        {"posture_no_hardware_security_error", EnrollmentSubstatus::PostureNoHardwareSecurityError},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(decodedEnrollment(enrollmentStatusDocument("complete", row.literal)).substatus, row.value);
    }
}

TEST(EnrollmentStatusNotificationFromJson, UnlistedSubstatusFails) {
    for (const char* substatus : {"none", "None", "Success", "unknown", " "}) {
        expectEnrollmentFailure(enrollmentStatusDocument("complete", substatus));
    }
}

TEST(EnrollmentStatusNotificationFromJson, SubstatusOfAnotherKindIsNone) {
    for (const json::value& substatus :
         {json::value(7), json::value(nullptr), json::value(true), json::value(json::object{})}) {
        const auto document = with(enrollmentStatusDocument("complete"), "/substatus", substatus);
        EXPECT_EQ(decodedEnrollment(document).substatus, EnrollmentSubstatus::None) << substatus;
    }
}

TEST(EnrollmentStatusNotificationFromJson, ContextOfAnotherKindIsEmpty) {
    for (const json::value& context : {json::value(12), json::value(nullptr), json::value(json::array{})}) {
        const auto document = with(enrollmentStatusDocument(), "/enrollment_context", context);
        EXPECT_EQ(decodedEnrollment(document).enrollment_context, "") << context;
    }
}

TEST(EnrollmentStatusNotificationFromJson, TextsAreKeptWhole) {
    auto document = with(enrollmentStatusDocument(), "/version", nulText);
    document = with(document, "/enrollment_id", nulText);
    document = with(document, "/enrollment_context", nulText);
    const auto record = decodedEnrollment(document);
    EXPECT_EQ(record.version, wholeNulText);
    EXPECT_EQ(record.enrollment_id, wholeNulText);
    EXPECT_EQ(record.enrollment_context, wholeNulText);
}

TEST(EnrollmentStatusNotificationFromJson, LiteralsAreComparedWhole) {
    expectEnrollmentFailure(with(enrollmentStatusDocument(), "/status", json::string("error\0", 6)));
    expectEnrollmentFailure(with(enrollmentStatusDocument(), "/substatus", json::string("\0", 1)));
}

// Unenrollment status

TEST(UnenrollmentStatusNotificationFromJson, ReadsEveryField) {
    EXPECT_EQ(decodedUnenrollment(unenrollmentStatusDocument("complete", "success")),
              test::unenrollmentStatus(UnenrollmentStatus::Complete, UnenrollmentSubstatus::Success));
}

TEST(UnenrollmentStatusNotificationFromJson, EveryRequiredKeyIsRequired) {
    for (const char* place : {"/version", "/status", "/substatus", "/enrollment_id"}) {
        expectUnenrollmentFailure(without(unenrollmentStatusDocument(), place));
    }
    expectUnenrollmentFailure(json::parse("{}"));
    expectUnenrollmentFailure(json::parse("[]"));
}

TEST(UnenrollmentStatusNotificationFromJson, ReadsEveryStatus) {
    EXPECT_EQ(decodedUnenrollment(unenrollmentStatusDocument("error")).status, UnenrollmentStatus::Error);
    EXPECT_EQ(decodedUnenrollment(unenrollmentStatusDocument("started")).status, UnenrollmentStatus::Started);
    EXPECT_EQ(decodedUnenrollment(unenrollmentStatusDocument("complete")).status,
              UnenrollmentStatus::Complete);
    expectUnenrollmentFailure(unenrollmentStatusDocument("Started"));
}

TEST(UnenrollmentStatusNotificationFromJson, ReadsEverySubstatus) {
    const auto read = [](const char* literal) {
        return decodedUnenrollment(unenrollmentStatusDocument("complete", literal)).substatus;
    };
    EXPECT_EQ(read(""), UnenrollmentSubstatus::None);
    EXPECT_EQ(read("success"), UnenrollmentSubstatus::Success);
    EXPECT_EQ(read("invalid_enrollment_id"), UnenrollmentSubstatus::InvalidEnrollmentId);
    EXPECT_EQ(read("internal_error"), UnenrollmentSubstatus::InternalError);
}

TEST(UnenrollmentStatusNotificationFromJson, SubstatusOfAnEnrollmentFails) {
    expectUnenrollmentFailure(unenrollmentStatusDocument("complete", "cancelled"));
    expectUnenrollmentFailure(unenrollmentStatusDocument("complete", "invalid_choice_id"));
}

TEST(UnenrollmentStatusNotificationFromJson, SubstatusAndContextOfAnotherKindAreForgiven) {
    auto document = with(unenrollmentStatusDocument("complete"), "/substatus", 7);
    document = with(document, "/enrollment_context", 12);
    const auto record = decodedUnenrollment(document);
    EXPECT_EQ(record.substatus, UnenrollmentSubstatus::None);
    EXPECT_EQ(record.enrollment_context, "");
}

// Auth request

TEST(EnrollmentAuthRequestFromJson, ReadsEveryField) {
    EXPECT_EQ(decodedAuthRequest(enrollmentAuthRequestDocument()), test::enrollmentAuthRequest());
}

TEST(EnrollmentAuthRequestFromJson, EveryRequiredTextMustBeAText) {
    for (const char* place : {"/version", "/enrollment_id", "/start_url", "/end_url", "/cookie_name"}) {
        expectAuthRequestFailure(without(enrollmentAuthRequestDocument(), place));
        expectAuthRequestFailure(with(enrollmentAuthRequestDocument(), place, nullptr));
    }
    expectAuthRequestFailure(json::parse("{}"));
    expectAuthRequestFailure(json::parse("[]"));
}

TEST(EnrollmentAuthRequestFromJson, ContextIsOptionalAndMayBeOfAnotherKind) {
    const auto document = enrollmentAuthRequestDocument();
    EXPECT_EQ(decodedAuthRequest(without(document, "/enrollment_context")).enrollment_context, "");
    EXPECT_EQ(decodedAuthRequest(with(document, "/enrollment_context", 12)).enrollment_context, "");
}

TEST(EnrollmentAuthRequestFromJson, UrlsAreNotLookedInto) {
    const auto document = with(enrollmentAuthRequestDocument(), "/start_url", "no url at all");
    EXPECT_EQ(decodedAuthRequest(document).start_url, "no url at all");
    EXPECT_EQ(decodedAuthRequest(with(document, "/end_url", "")).end_url, "");
}

TEST(EnrollmentAuthRequestFromJson, TextsAreKeptWhole) {
    EXPECT_EQ(decodedAuthRequest(with(enrollmentAuthRequestDocument(), "/cookie_name", nulText)).cookie_name,
              wholeNulText);
}

} // namespace
