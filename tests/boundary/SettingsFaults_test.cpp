#include "tests/boundary/SettingsFaults.h"

#include "common2/filesystem/File2.h"
#include "host/system/DataFolder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MachineSettings.h"
#include "tests/support/QuietLog.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

// What stands on disk and in the registry is somebody else's: whatever it is, the plugin is made and works.

namespace {

using test::configPath;

class SettingsFaults : public test::SettingsFaults {
protected:
    const test::TemporaryFolder data;

private:
    const host::DataFolder folder{data.path()};
};

class RegistryFaults : public test::SettingsFaults {};

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time) {
        text += piece;
    }
    return text;
}

TEST_F(SettingsFaults, AnyLogConfigurationLeavesAWorkingPlugin) {
    std::string manyChannels = R"({"global":"DBG_ERROR","channels":{)";
    for (int number = 0; number < 20'000; ++number) {
        manyChannels += '"' + std::to_string(number) + R"(":"DBG_ERROR",)";
    }
    manyChannels += R"("x":"DBG_ERROR"}})";
    const std::string longChannel = R"({"channels":{")" + std::string(1'000'000, 'a') + R"(":"DBG_TRACE"}})";
    const std::vector<std::string> contents{
        "",
        "\n",
        "null",
        "[]",
        "{}",
        "\"\"",
        "{",
        "\xEF\xBB\xBF{}",
        std::string(4096, '\0'),
        "{\"global\":\"DBG",
        R"({"global":1,"sources":2,"channels":3})",
        R"({"global":null,"sources":[],"channels":[{}]})",
        R"({"global":"","sources":{"":""},"channels":{"":""}})",
        R"({"global":"DBG_LOUD"})",
        R"({"sources":{"a":"DBG_ERROR","a":"DBG_TRACE"},"channels":{"a":{"b":"DBG_ERROR"}}})",
        R"({"global":"\ud800"})",
        "{\"global\":\"\xff\xfe\"}",
        repeated("[", 100'000),
        repeated(R"({"channels":)", 100'000),
        manyChannels,
        longChannel};
    for (const std::string& content : contents) {
        data.write(configPath, content);
        expectAWorkingModule(content.substr(0, 60));
    }
}

TEST_F(SettingsFaults, ALogConfigurationWithoutEndIsNotRead) {
    data.write(configPath, "{}");
    std::filesystem::resize_file(data.path() / configPath, 2 * File2::largestFile);
    const test::LogCapture log;
    const QuillBaseLogging logging("some_source");
    EXPECT_EQ(log.messages(DBG_ERROR).back(), "File2::ReadSync error: ios_base::badbit set");
    expectAWorkingPlugin("huge");
}

TEST_F(SettingsFaults, AFolderInPlaceOfTheLogConfigurationLeavesAWorkingPlugin) {
    std::filesystem::create_directories(data.path() / configPath);
    const test::LogCapture log;
    expectAWorkingModule("folder");
    const std::vector<std::string> errors = log.messages(DBG_ERROR);
    EXPECT_EQ(std::ranges::count_if(
                  errors, [](const auto& message) { return message.starts_with("File2::ReadSync error: "); }),
              1);
}

/// The values that are read.
const std::vector<std::pair<std::string, std::string>> values{
    {"Norvane/Norvane Kestrel Suite/DeviceDetails", "Nonce"},
    {"Norvane/Norvane Kestrel Suite/DeviceDetails", "Sid"},
    {"Norvane/Norvane Kestrel Suite/DeviceDetails", "DigitalProductId"},
    {"Norvane/Norvane Kestrel Suite/DeviceDetails", "DigitalProductId4"},
    {"Norvane/Norvane Kestrel Suite/Sandpiper Endpoint Agent", "MachineId"},
    {"Sandpiper/Endpoint Agent", "MachineId"},
};

TEST_F(RegistryFaults, AnyValueLeavesAWorkingPlugin) {
    const test::QuietLog quiet;
    const test::MachineSettings settings;
    for (const auto& [key, value] : values) {
        for (const std::string& content :
             {std::string(), std::string(1, '\0'), std::string(64 * 1024, 'x'),
              std::string(64 * 1024 + 1, 'x'), std::string("\xFF\xFE\x00\xD8", 4), std::string("\r\n"),
              repeated("{\"a\":", 10'000)}) {
            settings.setBytes(key, value, content);
            expectAWorkingPlugin(value);
            settings.setText(key, value, content);
            expectAWorkingPlugin(value);
        }
    }
}

} // namespace
