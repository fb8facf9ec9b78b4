#include "host/validate/Expect.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using host::validate::expect;
using host::validate::expectContains;
using host::validate::expectEqual;
using host::validate::Lines;
using host::validate::linesFrom;

std::string reasonOf(const std::function<void()>& check) {
    try {
        check();
    } catch (const host::validate::CheckFailure& failure) {
        return failure.what();
    }
    return "none";
}

TEST(Expect, WhatIsAsItShouldBeHasNoReason) {
    EXPECT_EQ(reasonOf([] {
                  expect(true, "x");
                  expectEqual("x", 1, 1);
                  expectEqual("x", "a", "a");
                  expectEqual("x", Lines{"a"}, Lines{"a"});
                  expectContains("x", {"a", "b"}, "b");
              }),
              "none");
}

TEST(Expect, ReasonsTellBothValues) {
    EXPECT_EQ(reasonOf([] { expect(false, "wrong"); }), "wrong");
    EXPECT_EQ(reasonOf([] { expectEqual("the size", -1, 2); }), "the size: -1, not 2");
    EXPECT_EQ(reasonOf([] { expectEqual("the label", "a", ""); }), "the label: \"a\", not \"\"");
    EXPECT_EQ(reasonOf([] { expectContains("lines", {"a"}, "b"); }), "lines: no \"b\"");
}

TEST(Expect, OfLinesTheFirstThatDiffersIsTold) {
    EXPECT_EQ(reasonOf([] {
                  expectEqual("lines", Lines{"a", "b"}, Lines{"a", "c"});
              }),
              "lines, 2. of 2: b, not c");
    EXPECT_EQ(reasonOf([] {
                  expectEqual("lines", Lines{"a"}, Lines{"a", "c"});
              }),
              "lines, 2. of 2: missing, not c");
    EXPECT_EQ(reasonOf([] {
                  expectEqual("lines", Lines{"a", "b"}, Lines{"a"});
              }),
              "lines, 2. of 1: b, not one more");
}

TEST(Expect, LinesThatAreNotThereDoNoHarm) {
    EXPECT_EQ(host::validate::lineAt({}, 0), "missing");
    EXPECT_EQ(linesFrom({"a", "b", "c"}, 1, 1), Lines{"b"});
    EXPECT_EQ(linesFrom({"a"}, 0, 5), Lines{"a"});
    EXPECT_EQ(linesFrom({"a"}, 7, 5), Lines{});
}

} // namespace
