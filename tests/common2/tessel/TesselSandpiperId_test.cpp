#include "common2/tessel/TesselSandpiperId.h"

#include "tests/support/LogCapture.h"
#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* uuid = "0123abcd-4567-89ef-CDEF-0123456789ab";
constexpr const char* otherUuid = "11111111-2222-3333-4444-555555555555";

const std::string suiteKey = "Norvane/Norvane Kestrel Suite/Sandpiper Endpoint Agent";
const std::string agentKey = "Sandpiper/Endpoint Agent";

class TesselSandpiperIdTest : public testing::Test {
protected:
    void expectId(const std::string& expected) const {
        std::string id = "stale";
        EXPECT_FALSE(TesselSandpiperId::IdentifySpMachineId(id));
        EXPECT_EQ(id, expected);
    }
    void expectError(int value) const {
        std::string id = "stale";
        const std::error_code error = TesselSandpiperId::IdentifySpMachineId(id);
        EXPECT_EQ(error.value(), value);
        EXPECT_STREQ(error.category().name(), "global_error");
        EXPECT_EQ(id, "");
    }

    test::MachineSettings settings;
    test::LogCapture capture;
};

TEST_F(TesselSandpiperIdTest, SuitesKeyComesFirst) {
    settings.setText(suiteKey, "MachineId", uuid);
    settings.setText(agentKey, "MachineId", otherUuid);
    expectId(uuid);
    EXPECT_TRUE(capture.records().empty());
}

TEST_F(TesselSandpiperIdTest, AgentsOwnKeyIsReadWhereTheSuiteHasNone) {
    settings.setText(agentKey, "MachineId", otherUuid);
    expectId(otherUuid);
}

TEST_F(TesselSandpiperIdTest, WithoutEitherKeyThereIsNone) { expectError(7); }

TEST_F(TesselSandpiperIdTest, SecondKeyIsNotTriedForAMissingValue) {
    settings.setText(suiteKey, "Other", "x");
    settings.setText(agentKey, "MachineId", otherUuid);
    expectError(7);
}

TEST_F(TesselSandpiperIdTest, InvalidValueIsLoggedAndTheSecondKeyNotTried) {
    settings.setText(suiteKey, "MachineId", "no-uuid");
    settings.setText(agentKey, "MachineId", otherUuid);
    expectError(14);
    EXPECT_EQ(capture.messages(), std::vector<std::string>{"Invalid Sandpiper UUID string: no-uuid"});
}

TEST(TesselSandpiperUuid, OnlyTheUsualFormIsValid) {
    EXPECT_TRUE(TesselSandpiperId::isValidUuid(uuid));
    EXPECT_TRUE(TesselSandpiperId::isValidUuid("00000000-0000-0000-0000-000000000000"));
    using namespace std::string_view_literals;
    for (const std::string_view text : {
             ""sv,
             "0123abcd456789efcdef0123456789ab"sv,
             "{0123abcd456789efcdef0123456789ab}"sv,
             "{0123abcd-4567-89ef-cdef-0123456789ab}"sv,
             "0123abcd-4567-89ef-cdef-0123456789a"sv,
             "0123abcd-4567-89ef-cdef-0123456789abc"sv,
             "0123abcd-4567-89ef-cdef-0123456789ag"sv,
             "0123abcd-4567-89efcdef-0123456789ab1"sv,
             "0123abcd4-567-89ef-cdef-0123456789ab"sv,
             "0123abcd+4567-89ef-cdef-0123456789ab"sv,
             "0123abcd-4567-89ef-cdef-0123456789a\0"sv,
             " 123abcd-4567-89ef-cdef-0123456789ab"sv,
             "------------------------------------"sv,
         }) {
        EXPECT_FALSE(TesselSandpiperId::isValidUuid(text)) << text;
    }
}

} // namespace
