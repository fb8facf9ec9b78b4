/// Settings that are as they should not be, and a plugin that works all the same.
#pragma once

#include "common/logging/QuillLogging.h"
#include "tests/boundary/Scene.h"

#include <gtest/gtest.h>

#include <string>

namespace test {

class SettingsFaults : public testing::Test {
protected:
    void expectAWorkingPlugin(const std::string& what) {
        Scene scene;
        ASSERT_NE(scene.plugin, nullptr) << what;
        EXPECT_EQ(scene.step("start"), 0) << what;
        EXPECT_TRUE(scene.enrols()) << what;
    }
    /// The same for a plugin whose module has just been loaded.
    void expectAWorkingModule(const std::string& what) {
        const QuillBaseLogging logging("some_source");
        expectAWorkingPlugin(what);
    }
};

/// Below the folder for programs' data.
inline constexpr const char* configPath = "Norvane/Norvane Kestrel Suite/WREN/logconfig.json";

} // namespace test
