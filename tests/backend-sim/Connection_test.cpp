#include "tests/backend-sim/BackendTest.h"

namespace {

class Connection : public test::BackendTest {};

constexpr const char* emptyStatus = "{}";

TEST_F(Connection, FactoryIsTheSameForAll) {
    EXPECT_EQ(factory().lock(), factory().lock());
    EXPECT_EQ(factory().lock()->Reserved(), QuillApiResult::NotImplemented);
}

TEST_F(Connection, EveryConnectionIsItsOwn) {
    const auto first = makeApi();
    const auto second = makeApi();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first, second);
}

TEST_F(Connection, StartsOnce) {
    const auto api = startApi();
    EXPECT_EQ(api->Start(receiver), QuillApiResult::InvalidState);
    EXPECT_EQ(api->Stop(), QuillApiResult::Success);
    EXPECT_EQ(api->Start(receiver), QuillApiResult::InvalidState);
}

TEST_F(Connection, RefusesReceiverThatIsGone) {
    const auto api = makeApi();
    EXPECT_EQ(api->Start({}), QuillApiResult::BadParameter);
    const std::weak_ptr<IQuillApiCallbacks> gone = std::make_shared<test::Receiver>();
    EXPECT_EQ(api->Start(gone), QuillApiResult::BadParameter);
    EXPECT_EQ(api->Start(receiver), QuillApiResult::Success) << "a refused start leaves it as it was";
}

TEST_F(Connection, StopsOnceAndOnlyAfterStart) {
    const auto api = makeApi();
    EXPECT_EQ(api->Stop(), QuillApiResult::InvalidState);
    ASSERT_EQ(api->Start(receiver), QuillApiResult::Success);
    EXPECT_EQ(api->Stop(), QuillApiResult::Success);
    EXPECT_EQ(api->Stop(), QuillApiResult::InvalidState);
}

TEST_F(Connection, HoldsItsReceiverWeakly) {
    const auto api = startApi();
    const std::weak_ptr<test::Receiver> watched = receiver;
    receiver.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(wrensim_has_receiver(WRENSIM_LATEST_API));
    EXPECT_EQ(wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, emptyStatus),
              wrensim_no_receiver);
}

TEST_F(Connection, HasNoReceiverBeforeStart) {
    const auto api = makeApi();
    EXPECT_FALSE(wrensim_has_receiver(WRENSIM_LATEST_API));
    EXPECT_EQ(wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, emptyStatus),
              wrensim_no_receiver);
    EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, emptyStatus),
              wrensim_no_receiver);
}

TEST_F(Connection, KeepsItsReceiverPastStop) {
    const auto api = startApi();
    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    EXPECT_TRUE(wrensim_has_receiver(WRENSIM_LATEST_API));
    EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, emptyStatus),
              wrensim_delivered);
    EXPECT_EQ(receiver->all().size(), 1u);
}

TEST_F(Connection, KeepsItsReceiverPastTheApiObject) {
    startApi().reset();
    EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, emptyStatus),
              wrensim_delivered);
}

TEST_F(Connection, StartThatIsToldToFailTakesNoReceiver) {
    const auto api = makeApi();
    ASSERT_TRUE(wrensim_set_result("Start", 6, 1));
    EXPECT_EQ(api->Start(receiver), QuillApiResult::NotInitialized);
    EXPECT_FALSE(wrensim_has_receiver(WRENSIM_LATEST_API));
    EXPECT_EQ(api->Start(receiver), QuillApiResult::Success);
    EXPECT_TRUE(wrensim_has_receiver(WRENSIM_LATEST_API));
}

TEST_F(Connection, StopThatIsToldToFailLeavesItRunning) {
    const auto api = startApi();
    ASSERT_TRUE(wrensim_set_result("Stop", 2, 1));
    EXPECT_EQ(api->Stop(), QuillApiResult::Unexpected);
    EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
    EXPECT_EQ(api->Stop(), QuillApiResult::Success);
}

} // namespace
