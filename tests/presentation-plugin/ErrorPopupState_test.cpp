#include "presentation-plugin/ErrorPopupState.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Shown = ErrorPopupState::Shown;

TEST(ErrorPopupState, KnowsWhatIsOpenAndWithWhichTexts) {
    ErrorPopupState state;
    EXPECT_EQ(state.find("id", "title", "message"), Shown::No);
    state.insert("id", "title", "message", [] {});
    EXPECT_EQ(state.find("id", "title", "message"), Shown::SameTexts);
    EXPECT_EQ(state.find("id", "title", "other"), Shown::OtherTexts);
    EXPECT_EQ(state.find("id", "other", "message"), Shown::OtherTexts);
    EXPECT_EQ(state.find("other", "title", "message"), Shown::No);
}

TEST(ErrorPopupState, OpeningAndClosingRunTheirStepAlong) {
    ErrorPopupState state;
    std::string steps;
    state.insert("id", "", "", [&] { steps += "open "; });
    EXPECT_TRUE(state.erase("id", [&] { steps += "close "; }));
    EXPECT_EQ(steps, "open close ");
    EXPECT_EQ(state.find("id", "", ""), Shown::No);
}

TEST(ErrorPopupState, ClosingWhatIsNotOpenRunsNothing) {
    ErrorPopupState state;
    bool hasRun = false;
    EXPECT_FALSE(state.erase("id", [&] { hasRun = true; }));
    EXPECT_FALSE(hasRun);
}

} // namespace
