#include "presentation-plugin/SpareText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(SpareText, LendsTheSameStorageAgainAndEmpty) {
    SpareText spare;
    {
        const SpareText::Loan loan(spare);
        loan->append("text");
    }
    const SpareText::Loan loan(spare);
    EXPECT_TRUE(loan->empty());
    EXPECT_GT(loan->capacity(), 0u);
}

TEST(SpareText, WhoeverComesWhileItIsLentGetsABufferOfTheirOwn) {
    SpareText spare;
    const SpareText::Loan first(spare);
    first->append("first");
    const SpareText::Loan second(spare);
    second->append("second");
    EXPECT_EQ(first->view(), "first");
    EXPECT_EQ(second->view(), "second");
}

TEST(SpareText, HugeTextDoesNotStay) {
    SpareText spare;
    {
        const SpareText::Loan loan(spare);
        loan->append(std::string(1'000'000, 'x'));
    }
    const SpareText::Loan loan(spare);
    EXPECT_EQ(loan->capacity(), 0u);
}

} // namespace
