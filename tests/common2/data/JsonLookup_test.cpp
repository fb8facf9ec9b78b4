#include "common2/data/JsonLookup.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::map<std::string, std::string>;

TEST(JsonLookup, FindsTextsAndMapsOfTexts) {
    std::string error = "stale";
    const JsonLookup json(R"({"a":"text","m":{"x":"1","y":"","z":2},"n":3,"nul":"x\u0000y"})", error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(json.GetString("a"), "text");
    EXPECT_EQ(json.GetString("nul"), std::string("x\0y", 3));
    EXPECT_EQ(json.GetStringMap("m"), (Texts{{"x", "1"}, {"y", ""}}));
}

TEST(JsonLookup, AbsentKeyOrOtherTypeReadsAsEmpty) {
    std::string error;
    const JsonLookup json(R"({"n":3,"m":{},"a":["x"],"t":"text","null":null})", error);
    for (const char* key : {"absent", "n", "m", "a", "null", "", "T"}) {
        EXPECT_EQ(json.GetString(key), "") << key;
    }
    for (const char* key : {"absent", "n", "m", "a", "null", "t"}) {
        EXPECT_EQ(json.GetStringMap(key), Texts()) << key;
    }
}

TEST(JsonLookup, ValueThatIsNoObjectHasNoKeys) {
    for (const char* text : {"[]", "\"a\"", "1", "null", "[{\"a\":\"b\"}]"}) {
        std::string error;
        const JsonLookup json(text, error);
        EXPECT_EQ(error, "") << text;
        EXPECT_EQ(json.GetString("a"), "") << text;
        EXPECT_EQ(json.GetStringMap("a"), Texts()) << text;
    }
}

TEST(JsonLookup, WhatIsNoJsonIsLoggedInTheParsersWords) {
    const std::string deep(10000, '[');
    for (const std::string& text : {std::string(), std::string("{"), std::string("{'a':'b'}"),
                                    std::string("{} {}"), std::string("\xFF"), deep}) {
        const test::LogCapture capture;
        std::string error;
        const JsonLookup json(text, error);
        EXPECT_NE(error, "") << text;
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].severity, 3);
        EXPECT_EQ(records[0].function, "JsonLookup::JsonLookup");
        EXPECT_EQ(records[0].message, "failed to parse json: " + error);
        EXPECT_EQ(json.GetString("a"), "");
        EXPECT_EQ(json.GetStringMap("a"), Texts());
    }
}

} // namespace
