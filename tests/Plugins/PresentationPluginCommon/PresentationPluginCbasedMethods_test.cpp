#include "Plugins/PresentationPluginCommon/PresentationPluginCbasedMethods.h"

#include "Plugins/PresentationPluginCommon/PresentationPluginShim.h"
#include "tests/Plugins/PresentationPluginCommon/FakePlugin.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using test::fakeModule;

/// Log lines as "severity function message".
std::vector<std::string> lines(const test::LogCapture& log) {
    std::vector<std::string> all;
    for (const test::LoggedRecord& record : log.records()) {
        all.push_back(std::to_string(record.severity) + " " + record.function + " " + record.message);
    }
    return all;
}

using Lines = std::vector<std::string>;

class CbasedMethods : public testing::Test {
protected:
    CbasedMethods() { fakeModule = {}; }
    test::LogCapture log;
};

std::string unrecognized(const void* address) {
    char text[100] = "";
    std::snprintf(text, sizeof text, "3 DisposeCbasedPresentationPlugin Unrecognized C Plugin: %p", address);
    return text;
}

TEST_F(CbasedMethods, CreateMakesThePluginByItsPlainNameAndSaysSo) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(fakeModule.created, "com.norvane.vantor.presentation");
    EXPECT_EQ(lines(log),
              (Lines{"1 CPresentationPluginShim::CPresentationPluginShim Leveraging C++ Plugin interface "
                     "within C based Plugin interface shim",
                     "1 CreateCbasedPresentationPlugin Created C Plugin interface "
                     "'c_com.norvane.vantor.presentation'"}));
    EXPECT_EQ(log.records()[0].file, "PresentationPluginShim");
    EXPECT_EQ(log.records()[1].file, "PresentationPluginCbasedMethods");
    DisposeCbasedPresentationPlugin(record);
}

TEST_F(CbasedMethods, RecordTellsItsSizeAndHasNoEmptyField) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    EXPECT_EQ(record->size, sizeof *record);
    EXPECT_EQ(record->size, 17 * sizeof(void*));
    std::uintptr_t fields[17];
    std::memcpy(fields, record, sizeof fields);
    EXPECT_THAT(fields, testing::Each(testing::Ne(0u)));
    DisposeCbasedPresentationPlugin(record);
}

TEST_F(CbasedMethods, CreateWithoutAPluginLeavesNothing) {
    fakeModule.makes = test::FakeModule::Makes::Nothing;
    EXPECT_EQ(CreateCbasedPresentationPlugin(), nullptr);
    EXPECT_EQ(lines(log),
              (Lines{"3 CPresentationPluginShim::CPresentationPluginShim CreatePlugin failed",
                     "3 CreateCbasedPresentationPlugin Creation of Presentation C Plugin failed"}));
}

TEST_F(CbasedMethods, PluginOfAnOlderVersionIsNoPlugin) {
    fakeModule.makes = test::FakeModule::Makes::PluginOfAnOlderVersion;
    EXPECT_EQ(CreateCbasedPresentationPlugin(), nullptr);
    EXPECT_EQ(fakeModule.alive, 0u);
    EXPECT_EQ(lines(log),
              (Lines{"3 CPresentationPluginShim::CPresentationPluginShim CreatePlugin failed",
                     "3 CreateCbasedPresentationPlugin Creation of Presentation C Plugin failed"}));
}

TEST_F(CbasedMethods, WhatTheMakingOfAPluginThrowsIsLoggedAndLeavesNothing) {
    const std::string failed = "3 CreateCbasedPresentationPlugin Creation of Presentation C Plugin failed";
    fakeModule.throws = true;
    EXPECT_EQ(CreateCbasedPresentationPlugin(), nullptr);
    EXPECT_EQ(lines(log), (Lines{"3 CreateCbasedPresentationPlugin the plugin threw", failed}));
    log.clear();
    fakeModule = {};
    fakeModule.throwsANumber = true;
    EXPECT_EQ(CreateCbasedPresentationPlugin(), nullptr);
    EXPECT_EQ(lines(log), (Lines{"3 CreateCbasedPresentationPlugin unknown exception", failed}));
}

TEST_F(CbasedMethods, DisposeEndsThePluginAndSaysSo) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    EXPECT_EQ(fakeModule.alive, 1u);
    log.clear();
    EXPECT_TRUE(DisposeCbasedPresentationPlugin(record));
    EXPECT_EQ(fakeModule.alive, 0u);
    EXPECT_EQ(lines(log), (Lines{"1 DisposeCbasedPresentationPlugin Disposed C Plugin for interface "
                                 "'c_com.norvane.vantor.presentation'"}));
}

TEST_F(CbasedMethods, PluginThatStopsAtItsEndStillReachesTheHost) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    std::uintptr_t heard = 0;
    PresentationCbasedCallbacks callbacks{
        reinterpret_cast<std::uintptr_t>(&heard),
        [](std::uintptr_t, std::uintptr_t, const char*) { return std::int32_t{0}; },
        [](std::uintptr_t context, std::uintptr_t hostHandle) {
            *reinterpret_cast<std::uintptr_t*>(context) = hostHandle;
            return std::int32_t{0};
        }};
    fakeModule.stopsAtTheEnd = true;
    record->Register(record->handle, "", 77, &callbacks, nullptr);
    EXPECT_TRUE(DisposeCbasedPresentationPlugin(record));
    EXPECT_EQ(heard, 77u);
}

TEST_F(CbasedMethods, DisposeThatThePluginsModuleRefusesIsLoggedAndStillDone) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    log.clear();
    fakeModule.disposeResult = false;
    EXPECT_TRUE(DisposeCbasedPresentationPlugin(record));
    EXPECT_EQ(lines(log), (Lines{"3 CPresentationPluginShim::~CPresentationPluginShim DisposePlugin failed",
                                 "1 DisposeCbasedPresentationPlugin Disposed C Plugin for interface "
                                 "'c_com.norvane.vantor.presentation'"}));
}

TEST_F(CbasedMethods, SecondDisposeIsRefusedWithoutTouchingTheRecord) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    DisposeCbasedPresentationPlugin(record);
    log.clear();
    EXPECT_FALSE(DisposeCbasedPresentationPlugin(record));
    EXPECT_EQ(lines(log), (Lines{unrecognized(record)}));
}

TEST_F(CbasedMethods, ForeignRecordAndNullAreRefused) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    PresentationPluginCbasedMethods foreign = *record;
    log.clear();
    EXPECT_FALSE(DisposeCbasedPresentationPlugin(&foreign));
    EXPECT_FALSE(DisposeCbasedPresentationPlugin(nullptr));
    EXPECT_EQ(lines(log), (Lines{unrecognized(&foreign), unrecognized(nullptr)}));
    EXPECT_EQ(fakeModule.alive, 1u) << "the foreign record's handle was followed";
    EXPECT_TRUE(DisposeCbasedPresentationPlugin(record));
}

TEST_F(CbasedMethods, RecordWhoseHandleTheHostClearedIsFreedAllTheSame) {
    PresentationPluginCbasedMethods* record = CreateCbasedPresentationPlugin();
    void* const handle = record->handle;
    record->handle = nullptr;
    EXPECT_TRUE(DisposeCbasedPresentationPlugin(record));
    EXPECT_EQ(fakeModule.alive, 1u);
    delete static_cast<CPresentationPluginShim*>(handle); // out of reach for everyone else
}

TEST_F(CbasedMethods, RecordsComeAndGoOnSeveralThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 50; ++round) {
                PresentationPluginCbasedMethods foreign{};
                EXPECT_FALSE(DisposeCbasedPresentationPlugin(&foreign));
            }
        });
    }
    for (int round = 0; round < 50; ++round) {
        EXPECT_TRUE(DisposeCbasedPresentationPlugin(CreateCbasedPresentationPlugin()));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
