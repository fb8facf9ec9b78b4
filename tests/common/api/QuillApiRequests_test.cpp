#include "common/api/QuillApiDefsUtil.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(QuillApiRequests, InitiateEnrollment) {
    EXPECT_EQ(initiateEnrollmentRequest("1", "choice", "context"),
              R"({"version":"1","enrollment_choice_id":"choice","enrollment_context":"context"})");
}

TEST(QuillApiRequests, ReEnrollmentAndUnenrollment) {
    EXPECT_EQ(enrollmentRequest("1", "enrollment", "context"),
              R"({"version":"1","enrollment_id":"enrollment","enrollment_context":"context"})");
}

TEST(QuillApiRequests, EnrollmentAuthReply) {
    EXPECT_EQ(enrollmentAuthReplyRequest("1", "enrollment", "cookie"),
              R"({"version":"1","enrollment_id":"enrollment","enrollment_cookie":"cookie"})");
}

TEST(QuillApiRequests, CancelEnrollmentAndConfigSync) {
    EXPECT_EQ(enrollmentIdRequest("1", "enrollment"), R"({"version":"1","enrollment_id":"enrollment"})");
}

TEST(QuillApiRequests, TriggerPostureReports) { EXPECT_EQ(versionRequest("1"), R"({"version":"1"})"); }

TEST(QuillApiRequests, DataplaneAuthReply) {
    EXPECT_EQ(dataplaneAuthReplyRequest("1", "context", "cookie"),
              R"({"version":"1","context_id":"context","authorization_cookie":"cookie"})");
}

TEST(QuillApiRequests, ValuesAreTextsWhateverTheyLookLike) {
    EXPECT_EQ(enrollmentIdRequest("1.5", "null"), R"({"version":"1.5","enrollment_id":"null"})");
    EXPECT_EQ(versionRequest(""), R"({"version":""})");
}

TEST(QuillApiRequests, ValuesAreEscaped) {
    EXPECT_EQ(versionRequest("say \"\\\n\t\x01 é"), R"({"version":"say \"\\\n\t\u0001 é"})");
    EXPECT_EQ(versionRequest(std::string("a\0b", 3)), R"({"version":"a\u0000b"})");
}

} // namespace
