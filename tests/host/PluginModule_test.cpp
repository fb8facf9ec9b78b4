#include "host/PluginModule.h"

#include "host/HostError.h"
#include "tests/host/Paths.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace {

using host::PluginModule;
using ::testing::HasSubstr;

std::string failureOf(const std::string& file) {
    try {
        const PluginModule module(file);
    } catch (const host::HostError& fault) {
        return fault.what();
    }
    return "no failure";
}

TEST(PluginModule, OffersItsInterfaces) {
    const PluginModule module(test::echoModule);
    const PluginInterfaceList list = module.interfaces();
    ASSERT_EQ(list.count, 2);
    EXPECT_STREQ(list.entries[0].name, "com.norvane.vantor.presentation");
    EXPECT_EQ(list.entries[0].version, 3);
    EXPECT_FALSE(module.hasCRecord());
}

TEST(PluginModule, MakesObjectsAndDisposesOfThem) {
    const PluginModule module(test::echoModule);
    IPresentationPluginV3* plugin = module.create("com.norvane.vantor.presentation");
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->IsUIEnabled());
    EXPECT_TRUE(module.dispose(plugin));
    EXPECT_TRUE(module.dispose(nullptr));
    EXPECT_EQ(module.create("other"), nullptr);
    EXPECT_EQ(module.create(nullptr), nullptr);
}

TEST(PluginModule, WhatCannotBeLoadedIsOneClearLine) {
    const std::string missing = failureOf("/nonexistent/module.so");
    EXPECT_THAT(missing, HasSubstr(std::filesystem::absolute("/nonexistent/module.so").string()));
    EXPECT_EQ(missing.find('\n'), std::string::npos);
    EXPECT_THAT(failureOf("module.so"), HasSubstr((std::filesystem::current_path() / "module.so").string()))
        << "looked for in the working folder";
}

TEST(PluginModule, LibraryWithoutTheFunctionsIsNoModule) {
    EXPECT_THAT(failureOf(test::backendLibrary), HasSubstr("exports no GetAvailableInterfaces"));
}

} // namespace
