#include "common/logging/QuillLogging.h"
#include "common2/filesystem/File2.h"
#include "tests/boundary/Scene.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QuietLog.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

// What stands on disk and in the registry is somebody else's: whatever it is, the plugin is made and works.

namespace {

class SettingsFaults : public testing::Test {
protected:
    void expectAWorkingPlugin(const std::string& what) {
        test::Scene scene;
        ASSERT_NE(scene.plugin, nullptr) << what;
        EXPECT_EQ(scene.step("start"), 0) << what;
        EXPECT_TRUE(scene.enrols()) << what;
    }

    test::TemporaryFolder data;
    test::ScopedEnvironment variable{"WREN_PROGRAM_DATA", data.path().c_str()};
};

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time) {
        text += piece;
    }
    return text;
}

constexpr const char* configPath = "Norvane/Norvane Kestrel Suite/WREN/logconfig.json";

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
        {
            const QuillBaseLogging logging("some_source");
            expectAWorkingPlugin(content.substr(0, 60));
        }
    }
}

TEST_F(SettingsFaults, ALogConfigurationThatCannotBeReadLeavesAWorkingPlugin) {
    const test::LogCapture log;
    std::filesystem::create_directories(data.path() / configPath); // a folder in its place
    {
        const QuillBaseLogging logging("some_source");
        expectAWorkingPlugin("folder");
    }
    std::filesystem::remove(data.path() / configPath);
    std::filesystem::create_symlink(configPath, data.path() / configPath); // leads nowhere
    {
        const QuillBaseLogging logging("some_source");
        expectAWorkingPlugin("link");
    }
    std::filesystem::remove(data.path() / configPath);
    std::filesystem::create_symlink("/dev/zero", data.path() / configPath); // never ends
    {
        const QuillBaseLogging logging("some_source");
        expectAWorkingPlugin("device");
    }
    const auto failures = [&] {
        std::size_t count = 0;
        for (const std::string& message : log.messages(DBG_ERROR)) {
            count += message.starts_with("File2::ReadSync error: ") ? 1u : 0u;
        }
        return count;
    }();
    EXPECT_EQ(failures, 3u);
}

TEST_F(SettingsFaults, ALogConfigurationWithoutEndIsNotRead) {
    data.write(configPath, "{}");
    std::filesystem::resize_file(data.path() / configPath, 2 * File2::largestFile);
    const test::LogCapture log;
    const QuillBaseLogging logging("some_source");
    EXPECT_EQ(log.messages(DBG_ERROR).back(), "File2::ReadSync error: ios_base::badbit set");
    expectAWorkingPlugin("huge");
}

/// The values that are read, by the files that stand for them.
const std::vector<std::string> values{
    "Norvane/Norvane Kestrel Suite/DeviceDetails/Nonce",
    "Norvane/Norvane Kestrel Suite/DeviceDetails/Sid",
    "Norvane/Norvane Kestrel Suite/DeviceDetails/DigitalProductId",
    "Norvane/Norvane Kestrel Suite/DeviceDetails/DigitalProductId4",
    "Norvane/Norvane Kestrel Suite/Sandpiper Endpoint Agent/MachineId",
    "Sandpiper/Endpoint Agent/MachineId",
};

TEST_F(SettingsFaults, AnyRegistryValueLeavesAWorkingPlugin) {
    const test::QuietLog quiet;
    for (const std::string& value : values) {
        for (const std::string& content :
             {std::string(), std::string(1, '\0'), std::string(64 * 1024, 'x'),
              std::string(64 * 1024 + 1, 'x'), std::string("\xFF\xFE\x00\xD8", 4), std::string("\r\n"),
              repeated("{\"a\":", 10'000)}) {
            data.write(value, content);
            expectAWorkingPlugin(value);
        }
        std::filesystem::remove(data.path() / value);
        std::filesystem::create_directories(data.path() / value); // of another type
        expectAWorkingPlugin(value);
        std::filesystem::remove(data.path() / value);
    }
}

TEST_F(SettingsFaults, WithoutAProgramDataFolderThePluginWorks) {
    const test::QuietLog quiet;
    for (const char* path : {"", "/nonexistent", "/dev/null", "relative/../path"}) {
        const test::ScopedEnvironment other("WREN_PROGRAM_DATA", path);
        const QuillBaseLogging logging("some_source");
        expectAWorkingPlugin(path);
    }
}

} // namespace
