#include "tests/module/ModuleSession.h"

#include "host/ExportedSymbols.h"
#include "host/PluginModule.h"
#include "wren/PresentationPlugin.h"
#include "wren/QuillApi.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <memory>
#include <set>
#include <string>

namespace {

using test::Lines;

class EntryPoints : public testing::Test {
protected:
    test::ModuleSession session;
};

const std::string createdPlugin = R"({"do":"create","name":"com.norvane.vantor.presentation"})";

TEST_F(EntryPoints, OfferTheSameTwoInterfacesBeforeAndAfterACreate) {
    const Lines offered{R"(interfaces [{"name":"com.norvane.vantor.presentation","version":3},)"
                        R"({"name":"c_com.norvane.vantor.presentation","version":3}])"};
    EXPECT_EQ(session.run(R"({"do":"interfaces"})"), offered);
    session.run(createdPlugin);
    EXPECT_EQ(session.run(R"({"do":"interfaces"})"), offered);
}

TEST_F(EntryPoints, NullNameIsRefused) {
    EXPECT_EQ(session.run(R"({"do":"create","name":null})"),
              (Lines{"log 3 CreatePlugin: NULL interface name", "created false"}));
}

TEST_F(EntryPoints, NamesThatDifferInAnyByteAreRefused) {
    for (const std::string name :
         {"c_com.norvane.vantor.presentation", "Com.norvane.vantor.presentation",
          "com.norvane.vantor.presentation ", "com.norvane.vantor.presentatio", ""}) {
        EXPECT_EQ(
            session.run(R"({"do":"create","name":")" + name + "\"}"),
            (Lines{"log 3 CreatePlugin: Wrong create method for interface '" + name + "'", "created false"}));
    }
}

TEST_F(EntryPoints, CreateFetchesTheFactoryAndConstructsThePlugin) {
    EXPECT_EQ(
        test::withoutTrace(session.run(createdPlugin)),
        (Lines{
            "log 0 CreatePlugin: Creating Plugin", "api GetQuillApiFactory",
            "log 0 PresentationPluginImpl::PresentationPluginImpl: Created WREN Presentation Plugin Version "
            "'5.1.11.2143'",
            "created true"}));
}

TEST_F(EntryPoints, AFactoryFailureIsLoggedByNameAndLeavesNothing) {
    const std::pair<int, std::string> results[] = {
        {1, "BadParameter"},       {2, "Unexpected"},     {3, "NullPointer"},
        {4, "InsufficientBuffer"}, {5, "NotImplemented"}, {6, "NotInitialized"},
        {7, "NotFound"},           {8, "InvalidState"},   {9, ""},
        {4000000000, ""}};
    for (const auto& [result, name] : results) {
        session.run(R"({"do":"backend","operation":"GetQuillApiFactory","result":)" +
                    std::to_string(static_cast<std::uint32_t>(result)) + "}");
        EXPECT_EQ(session.run(createdPlugin),
                  (Lines{"log 0 CreatePlugin: Creating Plugin", "api GetQuillApiFactory",
                         "log 3 CreatePlugin: GetQuillApiFactory returned error " + name, "created false"}));
    }
}

TEST_F(EntryPoints, DisposingOfNullIsLoggedAndFine) {
    EXPECT_EQ(session.run(R"({"do":"dispose","object":null})"),
              (Lines{"log 0 DisposePlugin: Disposing Plugin", "result true"}));
}

TEST_F(EntryPoints, SeveralObjectsLiveSideBySide) {
    session.run(R"({"do":"create","name":"com.norvane.vantor.presentation","object":"a"}
{"do":"create","name":"com.norvane.vantor.presentation","object":"b"}
{"do":"register","object":"a","arguments":"","callbacks":"hostA","translator":true,"handle":1}
{"do":"register","object":"b","arguments":"","callbacks":"hostB","translator":true,"handle":2}
{"do":"start","object":"a"})");
    EXPECT_EQ(test::only("result", session.run(R"({"do":"stop","object":"b"})")), Lines{"result -10"});
    EXPECT_EQ(test::only("result", session.run(R"({"do":"start","object":"b"})")), Lines{"result 0"});
    const Lines stopped = session.run(R"({"do":"stop","object":"a"})");
    EXPECT_EQ(test::only("result", stopped), Lines{"result 0"});
    EXPECT_EQ(session.outputs().back().at("n"), 8);
}

// What the built file offers.

/// Names as people write them: a constructor or destructor has several symbols, and which of them a compiler
/// makes for an abstract class is its own affair.
std::set<std::string> demangled(const std::vector<std::string>& symbols) {
    std::set<std::string> names;
    for (const std::string& symbol : symbols) {
        int status = 0;
        const std::unique_ptr<char, decltype(&std::free)> name(
            abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
        names.insert(status == 0 ? name.get() : symbol);
    }
    return names;
}

TEST(ModuleFile, ExportsTheEntryPointsAndTheClassPluginAndNothingElse) {
    std::set<std::string> expected{"CreateCbasedPlugin",
                                   "CreatePlugin",
                                   "DisposeCbasedPlugin",
                                   "DisposePlugin",
                                   "GetAvailableInterfaces",
                                   "Plugin::Plugin()",
                                   "Plugin::Plugin(Plugin const&)",
                                   "Plugin::operator=(Plugin const&)",
                                   "Plugin::~Plugin()",
                                   "typeinfo for Plugin",
                                   "typeinfo name for Plugin",
                                   "vtable for Plugin"};
#ifdef _WIN32
    expected.insert({"Plugin::DeletingDestructor(unsigned int)", "??0Plugin@@QAE@XZ",
                     "??0Plugin@@QAE@ABV0@@Z", "??1Plugin@@UAE@XZ", "??4Plugin@@QAEAAV0@ABV0@@Z",
                     "??_7Plugin@@6B@"});
#endif
    EXPECT_EQ(demangled(host::exportedSymbols(host::defaultModulePath())), expected);
}

/// The operation in a place of an object's table, called as compilers call a virtual member: on x86 a pointer
/// to one is its offset in the table, made odd, and an adjustment of the object.
template <class Function>
struct Slot;
template <class Result, class... Arguments>
struct Slot<Result(Arguments...)> {
    std::size_t place;

    Result operator()(void* object, Arguments... arguments) const {
        class Object;
        using Operation = Result (Object::*)(Arguments...);
        const struct {
            std::size_t oddOffset;
            std::ptrdiff_t adjustment;
        } representation{place * sizeof(void*) + 1, 0};
        Operation operation;
        static_assert(sizeof operation == sizeof representation);
        std::memcpy(&operation, &representation, sizeof operation);
        return (static_cast<Object*>(object)->*operation)(arguments...);
    }
};

/// The first place after the destructor, which takes two, but one in Microsoft's tables.
#ifdef _WIN32
constexpr std::size_t placeOfRegister = 2;
#else
constexpr std::size_t placeOfRegister = 3;
#endif

TEST(ModuleTables, PluginInterfaceHasItsSlotsInOrder) {
    const host::PluginModule module(host::defaultModulePath());
    const host::OwnedPlugin owned(module.create("com.norvane.vantor.presentation"),
                                  host::PluginOwner(module));
    ASSERT_TRUE(owned);
    void* plugin = dynamic_cast<void*>(owned.get());
    const auto textAt = [&](std::size_t place) {
        char text[64] = "";
        std::uint32_t size = sizeof text;
        Slot<std::int32_t(char*, std::uint32_t*)>{place}(plugin, text, &size);
        return std::string(text);
    };
    using Word = std::uintptr_t;
    EXPECT_TRUE((Slot<bool(const char*, int)>{0}(plugin, "com.norvane.vantor.presentation", 2)));
    const std::size_t first = placeOfRegister;
    EXPECT_EQ(
        (Slot<std::int32_t(const char*, Word, void*, void*)>{first}(plugin, nullptr, 0, nullptr, nullptr)),
        -4);
    EXPECT_EQ((Slot<std::int32_t()>{first + 1}(plugin)), -10);
    EXPECT_EQ((Slot<std::int32_t(std::uint32_t)>{first + 2}(plugin, 0)), -10);
    EXPECT_EQ((Slot<std::int32_t()>{first + 3}(plugin)), -10);
    EXPECT_TRUE((Slot<bool()>{first + 4}(plugin)));
    EXPECT_EQ(textAt(first + 5), "com.norvane.vantor.presentation.quill");
    EXPECT_EQ(textAt(first + 6), "Wren Gate");
    EXPECT_EQ(textAt(first + 7), "5.1.11.2143");
    EXPECT_EQ((Slot<std::int32_t(Word, Word, Word, Word)>{first + 8}(plugin, 0, 0, 0, 0)), -1);
    std::uint32_t size = 9;
    char output = 'x';
    EXPECT_EQ(
        (Slot<std::int32_t(Word, Word, char*, std::uint32_t*)>{first + 9}(plugin, 0, 0, &output, &size)), -2);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(output, '\0');
    EXPECT_EQ((Slot<std::int32_t(const char*)>{first + 10}(plugin, "no event")), -10);
    EXPECT_TRUE((Slot<bool()>{first + 11}(plugin)));
    EXPECT_EQ((Slot<std::int32_t(Word, Word)>{first + 12}(plugin, 0, 0)), -2);
    EXPECT_EQ((Slot<std::int32_t(Word)>{first + 13}(plugin, 0)), -2);
}

// What a host or a backend implements: the class notes which of its operations the table's place led to.

class NotingHost : public IPresentationCB, public ITranslator {
public:
    std::string called;
    std::int32_t Notify(std::uintptr_t, const char*) override { return note("Notify"); }
    std::int32_t StopDone(std::uintptr_t) override { return note("StopDone"); }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
        return note("TranslatorOperation1");
    }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
        return note("TranslatorOperation2");
    }

private:
    std::int32_t note(const char* name) {
        called = name;
        return 0;
    }
};

TEST(SdkTables, HostInterfacesHaveTheirSlotsInOrder) {
    NotingHost noting;
    void* callback = static_cast<IPresentationCB*>(&noting);
    Slot<std::int32_t(std::uintptr_t, const char*)>{0}(callback, 0, "");
    EXPECT_EQ(noting.called, "Notify");
    Slot<std::int32_t(std::uintptr_t)>{1}(callback, 0);
    EXPECT_EQ(noting.called, "StopDone");
    void* translator = static_cast<ITranslator*>(&noting);
    using Operation = std::int32_t(std::uintptr_t, std::uintptr_t, std::uintptr_t);
    Slot<Operation>{0}(translator, 0, 0, 0);
    EXPECT_EQ(noting.called, "TranslatorOperation1");
    Slot<Operation>{1}(translator, 0, 0, 0);
    EXPECT_EQ(noting.called, "TranslatorOperation2");
}

class NotingApi final : public IQuillApi, public IQuillApiFactory {
public:
    std::string called;
    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks>) override { return note("Start"); }
    QuillApiResult InitiateEnrollment(const char*) override { return note("InitiateEnrollment"); }
    QuillApiResult InitiateReEnrollment(const char*) override { return note("InitiateReEnrollment"); }
    QuillApiResult EnrollmentAuthReply(const char*) override { return note("EnrollmentAuthReply"); }
    QuillApiResult CancelEnrollment(const char*) override { return note("CancelEnrollment"); }
    QuillApiResult InitiateUnenrollment(const char*) override { return note("InitiateUnenrollment"); }
    QuillApiResult PerformConfigSync(const char*) override { return note("PerformConfigSync"); }
    QuillApiResult TriggerPostureReports(const char*) override { return note("TriggerPostureReports"); }
    QuillApiResult DataplaneAuthReply(const char*) override { return note("DataplaneAuthReply"); }
    QuillApiResult Stop() override { return note("Stop"); }
    QuillApiResult Reserved() override { return note("Reserved"); }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>&) override { return note("CreateApi"); }

private:
    QuillApiResult note(const char* name) {
        called = name;
        return QuillApiResult::Success;
    }
};

TEST(SdkTables, BackendInterfacesHaveTheirSlotsInOrder) {
    NotingApi noting;
    void* api = static_cast<IQuillApi*>(&noting);
    const char* const requests[] = {"InitiateEnrollment",    "InitiateReEnrollment", "EnrollmentAuthReply",
                                    "CancelEnrollment",      "InitiateUnenrollment", "PerformConfigSync",
                                    "TriggerPostureReports", "DataplaneAuthReply"};
    Slot<QuillApiResult(std::weak_ptr<IQuillApiCallbacks>)>{0}(api, {});
    EXPECT_EQ(noting.called, "Start");
    std::size_t place = 1;
    for (const char* request : requests) {
        Slot<QuillApiResult(const char*)>{place++}(api, "");
        EXPECT_EQ(noting.called, request);
    }
    Slot<QuillApiResult()>{9}(api);
    EXPECT_EQ(noting.called, "Stop");
    void* factory = static_cast<IQuillApiFactory*>(&noting);
    std::shared_ptr<IQuillApi> made;
    Slot<QuillApiResult()>{0}(factory);
    EXPECT_EQ(noting.called, "Reserved");
    Slot<QuillApiResult(std::shared_ptr<IQuillApi>&)>{1}(factory, made);
    EXPECT_EQ(noting.called, "CreateApi");
}

class NotingCallbacks : public IQuillApiCallbacks {
public:
    std::string called;
    void StatusNotification(const char*) override { called = "StatusNotification"; }
    void EnrollmentStatusNotification(const char*) override { called = "EnrollmentStatusNotification"; }
    void EnrollmentAuthRequest(const char*) override { called = "EnrollmentAuthRequest"; }
    void UnenrollmentStatusNotification(const char*) override { called = "UnenrollmentStatusNotification"; }
    void DataplaneNotification(const char*) override { called = "DataplaneNotification"; }
};

TEST(SdkTables, BackendCallbacksHaveTheirSlotsInOrder) {
    NotingCallbacks noting;
    void* callbacks = static_cast<IQuillApiCallbacks*>(&noting);
    std::size_t place = 0;
    for (const char* document :
         {"StatusNotification", "EnrollmentStatusNotification", "EnrollmentAuthRequest",
          "UnenrollmentStatusNotification", "DataplaneNotification"}) {
        Slot<void(const char*)>{place++}(callbacks, "");
        EXPECT_EQ(noting.called, document);
    }
}

} // namespace
