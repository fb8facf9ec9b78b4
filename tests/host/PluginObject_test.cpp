#include "host/PluginObject.h"

#include "host/HostError.h"
#include "tests/host/Paths.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using host::PluginInterface;
using ::testing::ElementsAre;

std::string called; ///< the function of the record that was called last, with its arguments

template <class Result, class... Arguments>
Result note(Result result, const char* function, Arguments... arguments) {
    std::ostringstream text;
    text << function;
    ((text << ' ' << arguments), ...);
    called = text.str();
    return result;
}

std::string place(const void* address) {
    std::ostringstream text;
    text << address;
    return text.str();
}

using Word = std::uintptr_t;

/// A record whose functions note what they are called with, the handle first.
PresentationPluginCbasedMethods notingRecord(void* handle) {
    return {
        .size = sizeof(PresentationPluginCbasedMethods),
        .handle = handle,
        .SupportsInterface = [](void* h, const char* name,
                                int version) { return note(true, "SupportsInterface", h, name, version); },
        .Register =
            [](void* h, const char* arguments, Word hostHandle, PresentationCbasedCallbacks* callbacks,
               TranslatorCbasedCallbacks* translator) {
                return note(-1, "Register", h, arguments, hostHandle, place(callbacks), place(translator));
            },
        .Start = [](void* h) { return note(-2, "Start", h); },
        .Stop = [](void* h, std::uint32_t reason) { return note(-3, "Stop", h, reason); },
        .Unregister = [](void* h) { return note(-4, "Unregister", h); },
        .IsUIEnabled = [](void* h) { return note(true, "IsUIEnabled", h); },
        .GetIdentity = [](void* h, char* buffer,
                          std::uint32_t* size) { return note(-5, "GetIdentity", h, place(buffer), size); },
        .GetLabel = [](void* h, char* buffer,
                       std::uint32_t* size) { return note(-6, "GetLabel", h, place(buffer), size); },
        .GetDisplayVersion =
            [](void* h, char* buffer, std::uint32_t* size) {
                return note(-7, "GetDisplayVersion", h, place(buffer), size);
            },
        .Encrypt = [](void* h, Word first, Word second, Word third,
                      Word fourth) { return note(-8, "Encrypt", h, first, second, third, fourth); },
        .Decrypt =
            [](void* h, Word first, Word second, char* output, std::uint32_t* size) {
                return note(-9, "Decrypt", h, first, second, place(output), size);
            },
        .EventNotification = [](void* h, const char* xml) { return note(-11, "EventNotification", h, xml); },
        .IsMultiUserModeEnabled = [](void* h) { return note(true, "IsMultiUserModeEnabled", h); },
        .GetPendingApprovalData =
            [](void* h, Word first, Word second) {
                return note(-12, "GetPendingApprovalData", h, first, second);
            },
        .ApprovalEventNotification =
            [](void* h, Word first) { return note(-13, "ApprovalEventNotification", h, first); },
    };
}

TEST(PluginObject, EveryOperationOfARecordPassesItsArgumentsToTheFunctionOfItsName) {
    int unused = 0;
    PresentationPluginCbasedMethods record = notingRecord(&unused);
    const auto plugin = host::behindNullHandle(record);
    host::HostCallbacks callbacks([](std::uintptr_t, const char*) {}, [](std::uintptr_t) {});
    host::HostTranslator translator;
    char buffer[2] = "";
    std::uint32_t size = 0;
    const std::string text = place(buffer) + " " + place(&size);

    EXPECT_TRUE(plugin->SupportsInterface("name", 2));
    EXPECT_EQ(called, "SupportsInterface 0 name 2");
    EXPECT_EQ(plugin->Register("text", 7, &callbacks, &translator), -1);
    EXPECT_EQ(called, "Register 0 text 7 " + place(callbacks.record()) + " " + place(translator.record()));
    EXPECT_EQ(plugin->Register("", 8, nullptr, nullptr), -1);
    EXPECT_EQ(called, "Register 0  8 0 0");
    EXPECT_EQ(plugin->Start(), -2);
    EXPECT_EQ(called, "Start 0");
    EXPECT_EQ(plugin->Stop(5), -3);
    EXPECT_EQ(called, "Stop 0 5");
    EXPECT_EQ(plugin->Unregister(), -4);
    EXPECT_EQ(called, "Unregister 0");
    EXPECT_TRUE(plugin->IsUIEnabled());
    EXPECT_EQ(called, "IsUIEnabled 0");
    EXPECT_EQ(plugin->GetIdentity(buffer, &size), -5);
    EXPECT_EQ(called, "GetIdentity 0 " + text);
    EXPECT_EQ(plugin->GetLabel(buffer, &size), -6);
    EXPECT_EQ(called, "GetLabel 0 " + text);
    EXPECT_EQ(plugin->GetDisplayVersion(buffer, &size), -7);
    EXPECT_EQ(called, "GetDisplayVersion 0 " + text);
    EXPECT_EQ(plugin->Encrypt(1, 2, 3, 4), -8);
    EXPECT_EQ(called, "Encrypt 0 1 2 3 4");
    EXPECT_EQ(plugin->Decrypt(1, 2, buffer, &size), -9);
    EXPECT_EQ(called, "Decrypt 0 1 2 " + text);
    EXPECT_EQ(plugin->EventNotification("<a/>"), -11);
    EXPECT_EQ(called, "EventNotification 0 <a/>");
    EXPECT_TRUE(plugin->IsMultiUserModeEnabled());
    EXPECT_EQ(called, "IsMultiUserModeEnabled 0");
    EXPECT_EQ(plugin->GetPendingApprovalData(1, 2), -12);
    EXPECT_EQ(called, "GetPendingApprovalData 0 1 2");
    EXPECT_EQ(plugin->ApprovalEventNotification(3), -13);
    EXPECT_EQ(called, "ApprovalEventNotification 0 3");
    EXPECT_EQ(plugin->record(), &record);
}

TEST(PluginObject, RecordsOfTheHostLeadToItsObjects) {
    std::vector<std::string> heard;
    host::HostCallbacks callbacks(
        [&](std::uintptr_t handle, const char* xml) { heard.push_back(std::to_string(handle) + " " + xml); },
        [&](std::uintptr_t handle) { heard.push_back(std::to_string(handle) + " stopped"); });
    const PresentationCbasedCallbacks& record = *callbacks.record();
    EXPECT_EQ(record.Notify(record.context, 3, "<a/>"), 0);
    EXPECT_EQ(record.StopDone(record.context, 4), 0);
    EXPECT_THAT(heard, ElementsAre("3 <a/>", "4 stopped"));
    host::HostTranslator translator;
    const TranslatorCbasedCallbacks& other = *translator.record();
    EXPECT_EQ(other.TranslatorOperation1(other.context, 1, 2, 3), 0);
    EXPECT_EQ(other.TranslatorOperation2(other.context, 1, 2, 3), 0);
}

TEST(PluginObject, ClassHasNoRecord) {
    const host::PluginModule module(test::echoModule);
    const auto plugin = host::makePlugin(module, PluginInterface::Cpp);
    ASSERT_TRUE(plugin);
    EXPECT_EQ(plugin->record(), nullptr);
    EXPECT_TRUE(plugin->dispose());
    EXPECT_EQ(host::makePlugin(module, PluginInterface::Cpp, "other"), nullptr);
    EXPECT_TRUE(host::disposeOfNull(module, PluginInterface::Cpp));
}

TEST(PluginObject, ModuleWithoutRecordsMakesNone) {
    const host::PluginModule module(test::echoModule);
    EXPECT_THROW(host::makePlugin(module, PluginInterface::C), host::HostError);
    EXPECT_THROW(host::disposeOfNull(module, PluginInterface::C), host::HostError);
}

} // namespace
