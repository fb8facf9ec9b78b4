#include "backend-sim/DuplicateKey.h"
#include "backend-sim/RequestReader.h"
#include "backend-sim/ScenarioReader.h"

#include <gtest/gtest.h>

#include <string>

// Text from outside that nests as deep as one likes is refused before anything walks over it.

namespace {

const std::string brackets(1'000'000, '[');

std::string objects() {
    std::string text;
    for (int level = 0; level < 100'000; ++level) {
        text += R"({"a":)";
    }
    return text;
}

TEST(JsonDepth, AScenarioWithoutEndIsRefused) {
    EXPECT_THROW(sim::readScenario(brackets), sim::ScenarioError);
    EXPECT_THROW(sim::readScenario(objects()), sim::ScenarioError);
    EXPECT_THROW(sim::readKnobs(brackets), sim::ScenarioError);
}

TEST(JsonDepth, ARequestWithoutEndIsRefused) {
    EXPECT_EQ(sim::readRequest(sim::Operation::CancelEnrollment, brackets), std::nullopt);
    EXPECT_EQ(sim::readRequest(sim::Operation::CancelEnrollment, objects()), std::nullopt);
}

TEST(JsonDepth, KeysAreComparedNoDeeperThanTheParserReads) {
    EXPECT_EQ(sim::findDuplicateKey(brackets), std::nullopt);
    EXPECT_EQ(sim::findDuplicateKey(objects() + R"({"a":1,"a":2})"), std::nullopt);
}

} // namespace
