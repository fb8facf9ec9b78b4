#include "common2/device/VantorDeviceID.h"
#include "common2/tessel/TesselSandpiperId.h"
#include "common2/windows/os/RegistryKey.h"
#include "tests/support/MachineSettings.h"
#include "tests/support/RegistryViews_win.h"

#include <gtest/gtest.h>

// Who finds which of the two sets of settings that a Windows of 64 bits has. A Windows of 32 bits has one,
// and all find it.

namespace {

using test::MachineSettings;
using test::SettingsView;

constexpr const char* deviceDetails = "Norvane/Norvane Kestrel Suite/DeviceDetails";
constexpr const char* machineId = "0123abcd-4567-89ef-CDEF-0123456789ab";

/// What opening a key yields that is in the other set.
std::uint32_t otherSet() { return test::hasTwoViews() ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS; }

std::uint32_t opening(std::uint32_t access) {
    RegistryKey key;
    return key.Open(L"Software\\Maker", access);
}

TEST(RegistryViews, AccessDecidesWhichSetIsRead) {
    {
        const MachineSettings settings(SettingsView::For32Bits);
        settings.setBytes("Maker", "Value", "x");
        EXPECT_EQ(opening(RegistryKey::readAccess), 0u);
        EXPECT_EQ(opening(RegistryKey::readAccessOf64Bit), otherSet());
    }
    const MachineSettings settings(SettingsView::Own);
    settings.setBytes("Maker", "Value", "x");
    EXPECT_EQ(opening(RegistryKey::readAccess), otherSet());
    EXPECT_EQ(opening(RegistryKey::readAccessOf64Bit), 0u);
}

/// @return the details' bytes in one text; empty where there are none
std::string cachedDetails() {
    VantorDeviceID::Details details;
    std::string text;
    if (VantorDeviceID().getDeviceDetailsFromCache(details)) {
        for (const auto& [name, bytes] : details) {
            text.append(bytes.begin(), bytes.end());
        }
    }
    return text;
}

TEST(RegistryViews, DeviceDetailsAreReadWhereProgramsOf32BitsKeepThem) {
    {
        const MachineSettings settings(SettingsView::For32Bits);
        settings.setBytes(deviceDetails, "Sid", "sid");
        settings.setBytes(deviceDetails, "Nonce", "n0ce");
        EXPECT_EQ(cachedDetails(), "sid");
        VantorDeviceID::Bytes nonce;
        EXPECT_TRUE(VantorDeviceID().getUDIDNonceFromRegistryKey(nonce));
        EXPECT_EQ(std::string(nonce.begin(), nonce.end()), "n0ce");
    }
    const MachineSettings settings(SettingsView::Own);
    settings.setBytes(deviceDetails, "Sid", "sid");
    settings.setBytes(deviceDetails, "Nonce", "n0ce");
    EXPECT_EQ(cachedDetails(), test::hasTwoViews() ? "" : "sid");
    VantorDeviceID::Bytes nonce;
    EXPECT_NE(VantorDeviceID().getUDIDNonceFromRegistryKey(nonce), test::hasTwoViews());
}

TEST(RegistryViews, MachineIdIsReadFromTheSystemsOwnSet) {
    for (const char* key :
         {"Norvane/Norvane Kestrel Suite/Sandpiper Endpoint Agent", "Sandpiper/Endpoint Agent"}) {
        SCOPED_TRACE(key);
        std::string id;
        {
            const MachineSettings settings(SettingsView::Own);
            settings.setText(key, "MachineId", machineId);
            EXPECT_FALSE(TesselSandpiperId::IdentifySpMachineId(id));
            EXPECT_EQ(id, machineId);
        }
        const MachineSettings settings(SettingsView::For32Bits);
        settings.setText(key, "MachineId", machineId);
        EXPECT_EQ(TesselSandpiperId::IdentifySpMachineId(id).value(), test::hasTwoViews() ? 7 : 0);
        EXPECT_EQ(id, test::hasTwoViews() ? "" : machineId);
    }
}

} // namespace
