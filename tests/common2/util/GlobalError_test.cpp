#include "common2/util/GlobalError.h"

#include <gtest/gtest.h>

namespace {

struct NumberedResult {
    QuillApiResult result;
    std::uint32_t value;
    const char* name;
};

constexpr NumberedResult numberedResults[] = {
    {QuillApiResult::Success, 0, "Success"},
    {QuillApiResult::BadParameter, 1, "BadParameter"},
    {QuillApiResult::Unexpected, 2, "Unexpected"},
    {QuillApiResult::NullPointer, 3, "NullPointer"},
    {QuillApiResult::InsufficientBuffer, 4, "InsufficientBuffer"},
    {QuillApiResult::NotImplemented, 5, "NotImplemented"},
    {QuillApiResult::NotInitialized, 6, "NotInitialized"},
    {QuillApiResult::NotFound, 7, "NotFound"},
    {QuillApiResult::InvalidState, 8, "InvalidState"},
    {QuillApiResult::NotSupported, 9, "NotSupported"},
    {QuillApiResult::ResourceInUse, 10, "ResourceInUse"},
    {QuillApiResult::Canceled, 11, "Canceled"},
    {QuillApiResult::Exception, 12, "Exception"},
    {QuillApiResult::BadResponse, 13, "BadResponse"},
    {QuillApiResult::BadFormat, 14, "BadFormat"},
    {QuillApiResult::AllocFailed, 15, "AllocFailed"},
    {QuillApiResult::NotConnected, 16, "NotConnected"},
    {QuillApiResult::RequestFailed, 17, "RequestFailed"},
    {QuillApiResult::RequestTimedOut, 18, "RequestTimedOut"},
    {QuillApiResult::AuthRequestTimedOut, 19, "AuthRequestTimedOut"},
    {QuillApiResult::ApprovalRequired, 20, "ApprovalRequired"},
    {QuillApiResult::RebootRequired, 21, "RebootRequired"},
    {QuillApiResult::CodeSignCheckFailed, 22, "CodeSignCheckFailed"},
    {QuillApiResult::LoadFailed, 23, "LoadFailed"},
    {QuillApiResult::ConnectionTerminating, 24, "ConnectionTerminating"},
    {QuillApiResult::ExpiredPointer, 25, "ExpiredPointer"},
    {QuillApiResult::ResourceUnavailable, 26, "ResourceUnavailable"},
    {QuillApiResult::Duplicate, 27, "Duplicate"},
    {QuillApiResult::Eof, 28, "Eof"},
    {QuillApiResult::BadHandle, 29, "BadHandle"},
};

TEST(GlobalErrorCategory, HasItsName) { EXPECT_STREQ(globalErrorCategory().name(), "global_error"); }

TEST(GlobalErrorCategory, TellsEveryResultByName) {
    for (const NumberedResult& row : numberedResults) {
        EXPECT_EQ(static_cast<std::uint32_t>(row.result), row.value);
        EXPECT_EQ(globalErrorCategory().message(static_cast<int>(row.value)), row.name);
    }
}

TEST(GlobalErrorCategory, TellsLargerValuesByNumber) {
    EXPECT_EQ(globalErrorCategory().message(30), "unknown_error_30");
    EXPECT_EQ(globalErrorCategory().message(2147483647), "unknown_error_2147483647");
}

TEST(GlobalErrorCategory, TellsResultsWithTheHighBitByNumber) {
    EXPECT_EQ(makeGlobalError(static_cast<QuillApiResult>(0xFFFFFFFFu)).message(),
              "unknown_error_4294967295");
}

TEST(GlobalError, PairsTheValueWithTheCategory) {
    const std::error_code error = makeGlobalError(QuillApiResult::BadParameter);
    EXPECT_EQ(error.value(), 1);
    EXPECT_EQ(&error.category(), &globalErrorCategory());
    EXPECT_EQ(error.message(), "BadParameter");
}

TEST(GlobalError, OfSuccessMeansNoError) { EXPECT_FALSE(makeGlobalError(QuillApiResult::Success)); }

TEST(GlobalError, NameOfALargerValueIsEmpty) {
    EXPECT_EQ(globalResultName(29), "BadHandle");
    EXPECT_EQ(globalResultName(30), "");
    EXPECT_EQ(globalResultName(0xFFFFFFFFu), "");
}

} // namespace
