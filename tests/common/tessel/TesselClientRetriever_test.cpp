#include "common/tessel/TesselClientRetriever.h"

#include "tests/support/LogCapture.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <sys/utsname.h>

namespace {

constexpr const char* uuid = "0123abcd-4567-89ef-cdef-0123456789ab";

std::string osOf(std::string_view machine) {
    return machine == "x86_64" ? "linux-x86_64" : machine == "aarch64" ? "linux-arm64" : "unknown";
}

class TesselClientRetrieverTest : public testing::Test {
protected:
    test::TemporaryFolder data;
    test::ScopedEnvironment variable{"WREN_PROGRAM_DATA", data.path().c_str()};
    test::LogCapture capture;
};

TEST_F(TesselClientRetrieverTest, GathersAllFields) {
    data.write("Norvane/Norvane Kestrel Suite/DeviceDetails/Sid", "abc");
    data.write("Sandpiper/Endpoint Agent/MachineId", std::string(uuid) + "\n");
    utsname names{};
    ASSERT_EQ(::uname(&names), 0);
    const TesselClientRetriever client;
    EXPECT_EQ(client.getProduct(), "Wren Gate");
    EXPECT_EQ(client.getVersion(), "5.1.11.2143");
    EXPECT_EQ(client.getOs(), osOf(names.machine));
    EXPECT_EQ(client.getDeviceHash(), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(client.getSandpiperId(), uuid);
    EXPECT_TRUE(capture.messages(3).empty());
}

TEST_F(TesselClientRetrieverTest, FieldThatCannotBeHadStaysEmptyAndStopsNoOther) {
    data.write("Norvane/Norvane Kestrel Suite/DeviceDetails/Sid", "abc");
    data.write("Sandpiper/Endpoint Agent/MachineId", "nonsense");
    const TesselClientRetriever client;
    EXPECT_EQ(client.getDeviceHash(), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(client.getSandpiperId(), "");
    const auto messages = capture.messages();
    EXPECT_EQ(std::ranges::count(messages, "TesselSandpiperId::IdentifySpMachineId returned error: 14"), 1);
}

} // namespace
