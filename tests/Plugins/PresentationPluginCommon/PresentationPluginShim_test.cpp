#include "Plugins/PresentationPluginCommon/PresentationPluginCbasedMethods.h"

#include "tests/Plugins/PresentationPluginCommon/FakePlugin.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using test::fakeModule;
using test::spelled;
using testing::ElementsAre;
using testing::IsEmpty;

/// A C host's records: they note what reaches them and answer 5.
struct CHost {
    std::vector<std::string> heard;
    PresentationCbasedCallbacks callbacks{context(), &CHost::notify, &CHost::stopDone};
    TranslatorCbasedCallbacks translator{context(), &CHost::translate1, &CHost::translate2};

    CHost() = default;
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

private:
    std::uintptr_t context() { return reinterpret_cast<std::uintptr_t>(this); }
    static std::int32_t note(std::uintptr_t context, const std::string& call) {
        reinterpret_cast<CHost*>(context)->heard.push_back(call);
        return 5;
    }
    static std::int32_t notify(std::uintptr_t context, std::uintptr_t hostHandle, const char* xml) {
        return note(context, "Notify " + std::to_string(hostHandle) + " " + xml);
    }
    static std::int32_t stopDone(std::uintptr_t context, std::uintptr_t hostHandle) {
        return note(context, "StopDone " + std::to_string(hostHandle));
    }
    static std::int32_t translate1(std::uintptr_t context, std::uintptr_t first, std::uintptr_t second,
                                   std::uintptr_t third) {
        return note(context, "TranslatorOperation1 " + std::to_string(first) + " " + std::to_string(second) +
                                 " " + std::to_string(third));
    }
    static std::int32_t translate2(std::uintptr_t context, std::uintptr_t first, std::uintptr_t second,
                                   std::uintptr_t third) {
        return note(context, "TranslatorOperation2 " + std::to_string(first) + " " + std::to_string(second) +
                                 " " + std::to_string(third));
    }
};

class Shim : public testing::Test {
protected:
    Shim() {
        fakeModule = {};
        record = CreateCbasedPresentationPlugin();
        fakeModule.called.clear(); // what making it asked
        log.clear();
    }
    ~Shim() override { DisposeCbasedPresentationPlugin(record); }

    std::int32_t registerHost() {
        return record->Register(record->handle, "arguments", 7, &host.callbacks, &host.translator);
    }

    test::LogCapture log;
    CHost host;
    PresentationPluginCbasedMethods* record;
};

TEST_F(Shim, ForwardsEveryFieldToTheOperationOfItsName) {
    char buffer[4] = "";
    std::uint32_t size = 0;
    const auto& r = *record;
    void* const h = record->handle;
    const std::string place = spelled(buffer) + " " + spelled(&size);
    const std::pair<std::function<std::int32_t()>, std::string> rows[] = {
        {[&] { return r.Register(h, "text", 7, &host.callbacks, &host.translator); }, "Register text 7"},
        {[&] { return r.Start(h); }, "Start"},
        {[&] { return r.Stop(h, 0); }, "Stop 0"},
        {[&] { return r.Stop(h, 1); }, "Stop 1"},
        {[&] { return r.Unregister(h); }, "Unregister"},
        {[&] { return r.GetIdentity(h, buffer, &size); }, "GetIdentity " + place},
        {[&] { return r.GetLabel(h, buffer, &size); }, "GetLabel " + place},
        {[&] { return r.GetDisplayVersion(h, buffer, &size); }, "GetDisplayVersion " + place},
        {[&] { return r.Encrypt(h, 1, 2, 3, 4); }, "Encrypt 1 2 3 4"},
        {[&] { return r.Decrypt(h, 1, 2, buffer, &size); }, "Decrypt 1 2 " + place},
        {[&] { return r.EventNotification(h, "<a/>"); }, "EventNotification <a/>"},
        {[&] { return r.GetPendingApprovalData(h, 1, 2); }, "GetPendingApprovalData 1 2"},
        {[&] { return r.ApprovalEventNotification(h, 9); }, "ApprovalEventNotification 9"},
    };
    for (const auto& [call, expected] : rows) {
        fakeModule.called.clear();
        fakeModule.result = -77;
        EXPECT_EQ(call(), -77) << expected;
        EXPECT_EQ(fakeModule.called, expected);
        fakeModule.result = 12;
        EXPECT_EQ(call(), 12) << expected;
    }
    const std::pair<std::function<bool()>, std::string> answers[] = {
        {[&] { return r.SupportsInterface(h, "name", -3); }, "SupportsInterface name -3"},
        {[&] { return r.IsUIEnabled(h); }, "IsUIEnabled"},
        {[&] { return r.IsMultiUserModeEnabled(h); }, "IsMultiUserModeEnabled"},
    };
    for (const auto& [call, expected] : answers) {
        fakeModule.answer = true;
        EXPECT_TRUE(call()) << expected;
        EXPECT_EQ(fakeModule.called, expected);
        fakeModule.answer = false;
        EXPECT_FALSE(call()) << expected;
    }
    EXPECT_THAT(log.records(), IsEmpty());
}

/// Calls every function of the record with that handle and expects each to refuse, with one log line.
void expectAllRefuse(const PresentationPluginCbasedMethods& r, void* h, const test::LogCapture& log,
                     const std::string& message) {
    const std::pair<std::string, std::function<bool()>> rows[] = {
        {"SupportsInterface", [&] { return !r.SupportsInterface(h, "", 3); }},
        {"Register", [&] { return r.Register(h, "", 1, nullptr, nullptr) == -10; }},
        {"Start", [&] { return r.Start(h) == -10; }},
        {"Stop", [&] { return r.Stop(h, 0) == -10; }},
        {"Unregister", [&] { return r.Unregister(h) == -10; }},
        {"IsUIEnabled", [&] { return !r.IsUIEnabled(h); }},
        {"GetIdentity", [&] { return r.GetIdentity(h, nullptr, nullptr) == -10; }},
        {"GetLabel", [&] { return r.GetLabel(h, nullptr, nullptr) == -10; }},
        {"GetDisplayVersion", [&] { return r.GetDisplayVersion(h, nullptr, nullptr) == -10; }},
        {"Encrypt", [&] { return r.Encrypt(h, 0, 0, 0, 0) == -10; }},
        {"Decrypt", [&] { return r.Decrypt(h, 0, 0, nullptr, nullptr) == -10; }},
        {"EventNotification", [&] { return r.EventNotification(h, "") == -10; }},
        {"IsMultiUserModeEnabled", [&] { return !r.IsMultiUserModeEnabled(h); }},
        {"GetPendingApprovalData", [&] { return r.GetPendingApprovalData(h, 0, 0) == -10; }},
        {"ApprovalEventNotification", [&] { return r.ApprovalEventNotification(h, 0) == -10; }},
    };
    std::size_t lines = 0;
    for (const auto& [operation, isRefused] : rows) {
        EXPECT_TRUE(isRefused()) << operation;
        const auto records = log.records();
        ASSERT_EQ(records.size(), ++lines) << operation;
        EXPECT_EQ(records.back().severity, 3);
        EXPECT_EQ(records.back().function, "CPresentationPluginShim::" + operation);
        EXPECT_EQ(records.back().file, "PresentationPluginShim");
        EXPECT_EQ(records.back().message, message);
    }
}

TEST_F(Shim, NullHandleIsRefusedWithOneLogLineForEachCall) {
    expectAllRefuse(*record, nullptr, log, "NULL shim handle");
    EXPECT_EQ(fakeModule.called, "");
}

TEST_F(Shim, ExceptionOfThePluginEndsInALogLineAndARefusal) {
    fakeModule.throws = true;
    expectAllRefuse(*record, record->handle, log, "the plugin threw");
}

TEST_F(Shim, WhateverElseThePluginThrowsEndsLikewise) {
    fakeModule.throwsANumber = true;
    expectAllRefuse(*record, record->handle, log, "unknown exception");
}

TEST_F(Shim, NullHandleIsRefusedBeforeTheReason) {
    EXPECT_EQ(record->Stop(nullptr, 2), -10);
    EXPECT_THAT(log.messages(), ElementsAre("NULL shim handle"));
}

TEST_F(Shim, ReasonOutOfRangeNeverReachesThePlugin) {
    for (const std::uint32_t reason : {2u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        log.clear();
        EXPECT_EQ(record->Stop(record->handle, reason), -10);
        ASSERT_EQ(log.records().size(), 1u);
        EXPECT_EQ(log.records()[0].severity, 3);
        EXPECT_EQ(log.records()[0].function, "CPresentationPluginShim::Stop");
        EXPECT_EQ(log.records()[0].message, "Reason out of range");
    }
    EXPECT_EQ(fakeModule.called, "");
}

TEST_F(Shim, StandsInForBothOfTheHostsInterfaces) {
    registerHost();
    ASSERT_NE(fakeModule.presentationCB, nullptr);
    ASSERT_NE(fakeModule.translator, nullptr);
    EXPECT_EQ(fakeModule.presentationCB->Notify(8, "<notice/>"), 5);
    EXPECT_EQ(fakeModule.presentationCB->StopDone(9), 5);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), 5);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation2(4, 5, 6), 5);
    EXPECT_THAT(host.heard, ElementsAre("Notify 8 <notice/>", "StopDone 9", "TranslatorOperation1 1 2 3",
                                        "TranslatorOperation2 4 5 6"));
}

TEST_F(Shim, PluginSeesTheShimWhereTheHostGivesNullRecords) {
    EXPECT_EQ(record->Register(record->handle, "", 7, nullptr, nullptr), 0);
    ASSERT_NE(fakeModule.presentationCB, nullptr);
    ASSERT_NE(fakeModule.translator, nullptr);
    EXPECT_EQ(fakeModule.presentationCB->Notify(7, "<notice/>"), 0);
    EXPECT_EQ(fakeModule.presentationCB->StopDone(7), 0);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), -10);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation2(1, 2, 3), -10);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Shim, EitherRecordMayBeMissing) {
    record->Register(record->handle, "", 7, &host.callbacks, nullptr);
    EXPECT_EQ(fakeModule.presentationCB->Notify(7, "a"), 5);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), -10);
    record->Register(record->handle, "", 7, nullptr, &host.translator);
    EXPECT_EQ(fakeModule.presentationCB->Notify(7, "b"), 0);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), 5);
    EXPECT_THAT(host.heard, ElementsAre("Notify 7 a", "TranslatorOperation1 1 2 3"));
}

TEST_F(Shim, RecordsOfARefusedRegisterAreKeptAllTheSame) {
    registerHost();
    CHost other;
    fakeModule.result = -10;
    EXPECT_EQ(record->Register(record->handle, "", 8, &other.callbacks, &other.translator), -10);
    fakeModule.presentationCB->Notify(7, "a");
    fakeModule.translator->TranslatorOperation2(1, 2, 3);
    EXPECT_THAT(host.heard, IsEmpty());
    EXPECT_THAT(other.heard, ElementsAre("Notify 7 a", "TranslatorOperation2 1 2 3"));
    record->Register(record->handle, "", 8, nullptr, nullptr);
}

TEST_F(Shim, UnregisterForgetsTheRecordsOnlyIfThePluginHasUnregistered) {
    registerHost();
    for (const std::int32_t refusal : {-10, -4, 1}) {
        fakeModule.result = refusal;
        EXPECT_EQ(record->Unregister(record->handle), refusal);
        EXPECT_EQ(fakeModule.presentationCB->Notify(7, "a"), 5);
        EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), 5);
    }
    fakeModule.result = 0;
    EXPECT_EQ(record->Unregister(record->handle), 0);
    EXPECT_EQ(fakeModule.presentationCB->Notify(7, "a"), 0);
    EXPECT_EQ(fakeModule.presentationCB->StopDone(7), 0);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation1(1, 2, 3), -10);
    EXPECT_EQ(fakeModule.translator->TranslatorOperation2(1, 2, 3), -10);
    EXPECT_EQ(host.heard.size(), 6u);
}

} // namespace
