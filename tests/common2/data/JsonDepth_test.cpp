#include "common2/data/JsonLookup.h"

#include <gtest/gtest.h>

#include <string>

// What the service and the configuration send as JSON nests as deep as the JSON library lets it: 32 levels.

namespace {

std::string nested(std::size_t depth, const char* open, const char* close) {
    std::string text = R"({"a":"found","b":)";
    for (std::size_t level = 1; level < depth; ++level) {
        text += open;
    }
    text += "1";
    for (std::size_t level = 1; level < depth; ++level) {
        text += close;
    }
    return text + "}";
}

TEST(JsonDepth, ALookupReadsDocumentsOf32Levels) {
    std::string error;
    EXPECT_EQ(JsonLookup(nested(32, "[", "]"), error).GetString("a"), "found");
    EXPECT_EQ(error, "");
    EXPECT_EQ(JsonLookup(nested(32, R"({"c":)", "}"), error).GetString("a"), "found");
    EXPECT_EQ(error, "");
}

TEST(JsonDepth, ALookupRefusesDocumentsThatNestDeeper) {
    for (const std::size_t depth : {33u, 1000u, 100'000u}) {
        std::string error;
        EXPECT_EQ(JsonLookup(nested(depth, "[", "]"), error).GetString("a"), "");
        EXPECT_NE(error, "") << depth;
        EXPECT_EQ(JsonLookup(nested(depth, R"({"c":)", "}"), error).GetString("a"), "");
        EXPECT_NE(error, "") << depth;
    }
}

TEST(JsonDepth, ALookupRefusesBracketsWithoutEnd) {
    std::string error;
    const JsonLookup lookup(std::string(10'000'000, '['), error);
    EXPECT_NE(error, "");
}

} // namespace
