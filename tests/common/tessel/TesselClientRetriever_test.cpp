#include "common/tessel/TesselClientRetriever.h"

#include "common2/util/OsVerApi.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

constexpr const char* uuid = "0123abcd-4567-89ef-cdef-0123456789ab";

class TesselClientRetrieverTest : public testing::Test {
protected:
    test::MachineSettings settings;
    test::LogCapture capture;
};

TEST_F(TesselClientRetrieverTest, GathersAllFields) {
    settings.setBytes("Norvane/Norvane Kestrel Suite/DeviceDetails", "Sid", "abc");
    settings.setText("Sandpiper/Endpoint Agent", "MachineId", uuid);
    const TesselClientRetriever client;
    EXPECT_EQ(client.getProduct(), "Wren Gate");
    EXPECT_EQ(client.getVersion(), "5.1.11.2143");
    EXPECT_EQ(client.getOs(), MYOSVER_OS::ToString(OsVerApi().GetType()));
    EXPECT_EQ(client.getDeviceHash(), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(client.getSandpiperId(), uuid);
    EXPECT_TRUE(capture.messages(3).empty());
}

TEST_F(TesselClientRetrieverTest, FieldThatCannotBeHadStaysEmptyAndStopsNoOther) {
    settings.setBytes("Norvane/Norvane Kestrel Suite/DeviceDetails", "Sid", "abc");
    settings.setText("Sandpiper/Endpoint Agent", "MachineId", "nonsense");
    const TesselClientRetriever client;
    EXPECT_EQ(client.getDeviceHash(), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(client.getSandpiperId(), "");
    const auto messages = capture.messages();
    EXPECT_EQ(std::ranges::count(messages, "TesselSandpiperId::IdentifySpMachineId returned error: 14"), 1);
}

} // namespace
