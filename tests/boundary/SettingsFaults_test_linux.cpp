// Links, devices and variables, which don't decide on settings on Windows, and files that stand for settings.
#include "tests/boundary/SettingsFaults.h"

#include "tests/support/LogCapture.h"
#include "tests/support/QuietLog.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

namespace {

using test::configPath;

class LinuxSettingsFaults : public test::SettingsFaults {
protected:
    test::TemporaryFolder data;
    test::ScopedEnvironment variable{"WREN_PROGRAM_DATA", data.path().c_str()};
};

TEST_F(LinuxSettingsFaults, ALinkInPlaceOfTheLogConfigurationLeavesAWorkingPlugin) {
    const test::LogCapture log;
    std::filesystem::create_directories((data.path() / configPath).parent_path());
    std::filesystem::create_symlink(configPath, data.path() / configPath); // leads nowhere
    expectAWorkingModule("link");
    std::filesystem::remove(data.path() / configPath);
    std::filesystem::create_symlink("/dev/zero", data.path() / configPath); // never ends
    expectAWorkingModule("device");
    const auto failures = [&] {
        std::size_t count = 0;
        for (const std::string& message : log.messages(DBG_ERROR)) {
            count += message.starts_with("File2::ReadSync error: ") ? 1u : 0u;
        }
        return count;
    }();
    EXPECT_EQ(failures, 2u);
}

TEST_F(LinuxSettingsFaults, AFolderInPlaceOfAValueLeavesAWorkingPlugin) {
    const test::QuietLog quiet;
    for (const char* value : {"Norvane/Norvane Kestrel Suite/DeviceDetails/Nonce",
                              "Norvane/Norvane Kestrel Suite/DeviceDetails/Sid",
                              "Norvane/Norvane Kestrel Suite/DeviceDetails/DigitalProductId",
                              "Norvane/Norvane Kestrel Suite/DeviceDetails/DigitalProductId4",
                              "Norvane/Norvane Kestrel Suite/Sandpiper Endpoint Agent/MachineId",
                              "Sandpiper/Endpoint Agent/MachineId"}) {
        std::filesystem::create_directories(data.path() / value);
        expectAWorkingPlugin(value);
        std::filesystem::remove(data.path() / value);
    }
}

TEST_F(LinuxSettingsFaults, WithoutAProgramDataFolderThePluginWorks) {
    const test::QuietLog quiet;
    for (const char* path : {"", "/nonexistent", "/dev/null", "relative/../path"}) {
        const test::ScopedEnvironment other("WREN_PROGRAM_DATA", path);
        expectAWorkingModule(path);
    }
}

} // namespace
