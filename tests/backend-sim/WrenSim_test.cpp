#include "tests/backend-sim/BackendTest.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;

class WrenSim : public test::BackendTest {};

/// One call that the observer was told of.
struct Call {
    std::uint64_t api;
    std::string operation;
    std::string json; ///< "null" for a null pointer

    bool operator==(const Call&) const = default;
};

void PrintTo(const Call& call, std::ostream* out) {
    *out << call.api << ' ' << call.operation << ' ' << call.json;
}

class Observation {
public:
    Observation() { wrensim_observe(&Observation::take, this); }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation() { wrensim_observe(nullptr, nullptr); }

    std::vector<Call> calls;

private:
    static void take(void* context, std::uint64_t api, const char* operation, const char* json) {
        static_cast<Observation*>(context)->calls.push_back(
            {api, operation, json != nullptr ? json : "null"});
    }
};

TEST_F(WrenSim, ObserverIsToldOfEveryCall) {
    Observation observation;
    const auto api = startApi();
    const std::uint64_t number = observation.calls.back().api;
    EXPECT_GT(number, 0u);
    api->InitiateEnrollment("1");
    api->InitiateReEnrollment("2");
    api->EnrollmentAuthReply("3");
    api->CancelEnrollment("4");
    api->InitiateUnenrollment("5");
    api->PerformConfigSync("6");
    api->TriggerPostureReports("7");
    api->DataplaneAuthReply(nullptr);
    api->Stop();
    EXPECT_THAT(observation.calls,
                ElementsAre(Call{0, "GetQuillApiFactory", "null"}, Call{0, "CreateApi", "null"},
                            Call{number, "Start", "null"}, Call{number, "InitiateEnrollment", "1"},
                            Call{number, "InitiateReEnrollment", "2"},
                            Call{number, "EnrollmentAuthReply", "3"}, Call{number, "CancelEnrollment", "4"},
                            Call{number, "InitiateUnenrollment", "5"}, Call{number, "PerformConfigSync", "6"},
                            Call{number, "TriggerPostureReports", "7"},
                            Call{number, "DataplaneAuthReply", "null"}, Call{number, "Stop", "null"}));
}

TEST_F(WrenSim, ObserverIsToldBeforeTheOperationDoesItsWork) {
    const auto api = makeApi();
    bool hadReceiver = true;
    wrensim_observe([](void* context, std::uint64_t number, const char*,
                       const char*) { *static_cast<bool*>(context) = wrensim_has_receiver(number); },
                    &hadReceiver);
    ASSERT_EQ(api->Start(receiver), QuillApiResult::Success);
    EXPECT_FALSE(hadReceiver);
}

TEST_F(WrenSim, ObserverIsToldOnTheCallingThread) {
    std::thread::id told;
    wrensim_observe([](void* context, std::uint64_t, const char*,
                       const char*) { *static_cast<std::thread::id*>(context) = std::this_thread::get_id(); },
                    &told);
    factory();
    EXPECT_EQ(told, std::this_thread::get_id());
}

TEST_F(WrenSim, ObserverMayDecideTheResultOfTheCallThatItIsToldOf) {
    const auto api = startApi();
    wrensim_observe([](void*, std::uint64_t, const char* operation,
                       const char*) { wrensim_set_result(operation, 27, 1); },
                    nullptr);
    EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Duplicate);
}

TEST_F(WrenSim, ObserverMayDeliverAndWait) {
    const auto api = startApi();
    wrensim_observe(
        [](void*, std::uint64_t number, const char*, const char*) {
            wrensim_deliver_and_wait(number, wrensim_status_notification, "from the observer");
        },
        nullptr);
    api->TriggerPostureReports(R"({"version":"1"})");
    EXPECT_EQ(receiver->all().size(), 1u);
}

TEST_F(WrenSim, ObserverThatWasTakenAwayIsNotTold) {
    Observation observation;
    factory();
    wrensim_observe(nullptr, nullptr);
    factory();
    EXPECT_EQ(observation.calls.size(), 1u);
}

struct ToldOperation {
    const char* name;
    QuillApiResult (*call)(IQuillApi&);
};

TEST_F(WrenSim, ResultsCanBeToldForAllTenOperationsOfAConnection) {
    const ToldOperation operations[] = {
        {"Start", [](IQuillApi& api) { return api.Start({}); }},
        {"InitiateEnrollment", [](IQuillApi& api) { return api.InitiateEnrollment("{}"); }},
        {"InitiateReEnrollment", [](IQuillApi& api) { return api.InitiateReEnrollment("{}"); }},
        {"EnrollmentAuthReply", [](IQuillApi& api) { return api.EnrollmentAuthReply("{}"); }},
        {"CancelEnrollment", [](IQuillApi& api) { return api.CancelEnrollment("{}"); }},
        {"InitiateUnenrollment", [](IQuillApi& api) { return api.InitiateUnenrollment("{}"); }},
        {"PerformConfigSync", [](IQuillApi& api) { return api.PerformConfigSync("{}"); }},
        {"TriggerPostureReports", [](IQuillApi& api) { return api.TriggerPostureReports("{}"); }},
        {"DataplaneAuthReply", [](IQuillApi& api) { return api.DataplaneAuthReply("{}"); }},
        {"Stop", [](IQuillApi& api) { return api.Stop(); }},
    };
    const auto api = startApi();
    for (const ToldOperation& operation : operations) {
        ASSERT_TRUE(wrensim_set_result(operation.name, 4711, 2)) << operation.name;
        EXPECT_EQ(static_cast<std::uint32_t>(operation.call(*api)), 4711u) << operation.name;
        EXPECT_EQ(static_cast<std::uint32_t>(operation.call(*api)), 4711u) << operation.name;
        EXPECT_NE(static_cast<std::uint32_t>(operation.call(*api)), 4711u) << operation.name;
    }
}

TEST_F(WrenSim, ToldFactoryFailureHandsOutNothing) {
    ASSERT_TRUE(wrensim_set_result("GetQuillApiFactory", 7, 1));
    std::weak_ptr<IQuillApiFactory> handedOut;
    EXPECT_EQ(GetQuillApiFactory(handedOut), QuillApiResult::NotFound);
    EXPECT_TRUE(handedOut.expired());
    EXPECT_EQ(GetQuillApiFactory(handedOut), QuillApiResult::Success);
    EXPECT_FALSE(handedOut.expired());
}

TEST_F(WrenSim, ToldCreateFailureMakesNothing) {
    ASSERT_TRUE(wrensim_set_result("CreateApi", 9, 1));
    std::shared_ptr<IQuillApi> api;
    EXPECT_EQ(factory().lock()->CreateApi(api), QuillApiResult::NotSupported);
    EXPECT_FALSE(api);
    EXPECT_EQ(factory().lock()->CreateApi(api), QuillApiResult::Success);
    EXPECT_TRUE(api);
}

TEST_F(WrenSim, LaterResultReplacesTheOneThatWaits) {
    const auto api = startApi();
    wrensim_set_result("TriggerPostureReports", 2, 100);
    wrensim_set_result("TriggerPostureReports", 3, 1);
    EXPECT_EQ(api->TriggerPostureReports("{}"), QuillApiResult::NullPointer);
    EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    wrensim_set_result("TriggerPostureReports", 2, 100);
    wrensim_set_result("TriggerPostureReports", 3, 0);
    EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
}

TEST_F(WrenSim, ResultForNoOperationIsRefused) {
    for (const char* name : {static_cast<const char*>(nullptr), "", "start", "Start ", "Reserved"}) {
        EXPECT_FALSE(wrensim_set_result(name, 2, 1));
    }
}

TEST_F(WrenSim, CreateApiSucceedsWithANullObject) {
    wrensim_set_null_api(true);
    std::shared_ptr<IQuillApi> api = makeApi();
    EXPECT_FALSE(api);
    wrensim_set_null_api(false);
    EXPECT_TRUE(makeApi());
}

TEST_F(WrenSim, ExpiredFactoryIsGoneForAllHolders) {
    const auto before = factory();
    wrensim_set_factory_expired(true);
    EXPECT_TRUE(before.expired());
    EXPECT_TRUE(factory().expired()) << "the call succeeds all the same";
    wrensim_set_factory_expired(false);
    EXPECT_TRUE(before.expired()) << "what has expired stays so";
    EXPECT_FALSE(factory().expired());
}

TEST_F(WrenSim, FactoryThatIsInUseOutlivesItsExpiry) {
    const auto held = factory().lock();
    wrensim_set_factory_expired(true);
    std::shared_ptr<IQuillApi> api;
    EXPECT_EQ(held->CreateApi(api), QuillApiResult::Success);
}

TEST_F(WrenSim, FactoryThatIsNotExpiredStaysTheSame) {
    const auto before = factory();
    wrensim_set_factory_expired(false);
    EXPECT_EQ(factory().lock(), before.lock());
}

TEST_F(WrenSim, ResetTakesEverythingBack) {
    const auto api = startApi();
    wrensim_set_result("TriggerPostureReports", 2, 100);
    wrensim_set_result("GetQuillApiFactory", 2, 100);
    wrensim_set_null_api(true);
    wrensim_set_factory_expired(true);
    wrensim_reset();
    EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    EXPECT_FALSE(factory().expired());
    EXPECT_TRUE(makeApi());
}

TEST_F(WrenSim, ResetLeavesModeAndObserver) {
    Observation observation;
    wrensim_reset();
    const auto api = startApi();
    wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "only this");
    EXPECT_THAT(receiver->all(), ElementsAre(test::Received{"StatusNotification", "only this"}));
    EXPECT_EQ(observation.calls.size(), 3u);
}

} // namespace
