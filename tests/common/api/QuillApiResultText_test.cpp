#include "common/api/QuillApiResultText.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

struct ResultName {
    QuillApiResult result;
    const char* name;
};

constexpr ResultName resultNames[] = {
    {QuillApiResult::Success, "Success"},
    {QuillApiResult::BadParameter, "BadParameter"},
    {QuillApiResult::Unexpected, "Unexpected"},
    {QuillApiResult::NullPointer, "NullPointer"},
    {QuillApiResult::InsufficientBuffer, "InsufficientBuffer"},
    {QuillApiResult::NotImplemented, "NotImplemented"},
    {QuillApiResult::NotInitialized, "NotInitialized"},
    {QuillApiResult::NotFound, "NotFound"},
    {QuillApiResult::InvalidState, "InvalidState"},
};

TEST(QuillApiResultName, KnowsZeroToEight) {
    for (const ResultName& row : resultNames) {
        EXPECT_EQ(quillApiResultName(row.result), row.name);
    }
}

TEST(QuillApiResultName, IsEmptyFromNineOn) {
    for (const std::uint32_t value : {9u, 10u, 29u, 30u, 0xFFFFFFFFu}) {
        EXPECT_EQ(quillApiResultName(static_cast<QuillApiResult>(value)), "") << value;
    }
}

} // namespace
