#include "presentation-plugin/KnownText.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class KnownTextTest : public testing::Test {
protected:
    std::shared_ptr<const int> record = std::make_shared<const int>(1);
    std::shared_ptr<const int> other = std::make_shared<const int>(1);
    KnownText known;
};

TEST_F(KnownTextTest, KnowsNothingAtFirst) {
    EXPECT_FALSE(known.isOf(record, ""));
    EXPECT_FALSE(known.isOf(nullptr, ""));
}

TEST_F(KnownTextTest, KnowsTheTextOfItsRecordToTheLetter) {
    known.keep(record, "text");
    EXPECT_TRUE(known.isOf(record, "text"));
    EXPECT_FALSE(known.isOf(record, "text "));
    EXPECT_FALSE(known.isOf(record, "Text"));
    EXPECT_FALSE(known.isOf(record, ""));
}

TEST_F(KnownTextTest, TextDoesNotCountForAnotherRecord) {
    known.keep(record, "text");
    EXPECT_FALSE(known.isOf(other, "text"));
    EXPECT_FALSE(known.isOf(nullptr, "text"));
}

TEST_F(KnownTextTest, LaterTextReplacesTheFirst) {
    known.keep(record, "text");
    known.keep(other, "other text");
    EXPECT_FALSE(known.isOf(record, "text"));
    EXPECT_TRUE(known.isOf(other, "other text"));
}

TEST_F(KnownTextTest, MissingRecordHasNoText) {
    known.keep(record, "text");
    known.keep(nullptr, "text");
    EXPECT_FALSE(known.isOf(nullptr, "text"));
    EXPECT_FALSE(known.isOf(record, "text"));
}

TEST_F(KnownTextTest, ForgottenTextAndItsRecordAreGone) {
    known.keep(record, "text");
    EXPECT_EQ(record.use_count(), 2);
    known.forget();
    EXPECT_EQ(record.use_count(), 1);
    EXPECT_FALSE(known.isOf(record, "text"));
}

TEST_F(KnownTextTest, HugeTextIsNotKept) {
    const std::string huge(1'000'000, 'x');
    known.keep(record, "text");
    known.keep(record, huge);
    EXPECT_FALSE(known.isOf(record, huge));
    EXPECT_FALSE(known.isOf(record, "text"));
}

} // namespace
