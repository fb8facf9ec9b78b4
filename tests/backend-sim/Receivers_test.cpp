#include "tests/backend-sim/BackendTest.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace {

using test::Event;
using ::testing::ElementsAre;

constexpr const char* document = "{}";

/// How long the library remembers whom to call.
class Receivers : public test::BackendTest {
protected:
    Receivers() { wrensim_set_pace(0); }
    ~Receivers() override {
        wrensim_forget_receivers();
        wrensim_set_pace(100);
    }

    static bool isRemembered() { return wrensim_has_receiver(WRENSIM_LATEST_API); }
    static WrenSimDelivery deliver() {
        return wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, document);
    }
};

TEST_F(Receivers, IsLetGoWithTheApiObjectAfterStop) {
    wrensim_set_quiet(false);
    auto api = startApi();
    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    EXPECT_TRUE(isRemembered()) << "the object still stands";
    api.reset();
    EXPECT_FALSE(isRemembered());
    EXPECT_EQ(deliver(), wrensim_no_receiver);
}

TEST_F(Receivers, IsLetGoWithAnApiObjectThatWasNeverStopped) {
    wrensim_set_quiet(false);
    startApi().reset();
    EXPECT_FALSE(isRemembered());
}

TEST_F(Receivers, IsLetGoWithAnApiObjectThatCouldNotBeStopped) {
    wrensim_set_quiet(false);
    auto api = startApi();
    ASSERT_TRUE(wrensim_set_result("Stop", 2, 1));
    ASSERT_EQ(api->Stop(), QuillApiResult::Unexpected);
    api.reset();
    EXPECT_FALSE(isRemembered());
}

TEST_F(Receivers, StaysInQuietModeUntilItIsForgotten) {
    auto api = startApi();
    ASSERT_EQ(api->Stop(), QuillApiResult::Success);
    api.reset();
    EXPECT_TRUE(isRemembered());
    wrensim_set_quiet(false);
    EXPECT_TRUE(isRemembered()) << "what quiet mode kept is kept";
    wrensim_forget_receivers();
    EXPECT_FALSE(isRemembered());
    EXPECT_EQ(deliver(), wrensim_no_receiver);
}

TEST_F(Receivers, ForgettingTakesEveryConnection) {
    const auto running = startApi();
    const auto stopped = startApi();
    ASSERT_EQ(stopped->Stop(), QuillApiResult::Success);
    wrensim_forget_receivers();
    EXPECT_FALSE(isRemembered());
    EXPECT_EQ(running->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success)
        << "the connection itself goes on";
    EXPECT_THAT(receiver->all(), ElementsAre());
}

TEST_F(Receivers, ForgettingWithoutAnyIsHarmless) {
    wrensim_forget_receivers();
    wrensim_forget_receivers();
}

TEST_F(Receivers, ForgettingWaitsForTheCallback) {
    Event entered;
    std::atomic<bool> hasReturned = false;
    receiver->inside = [&] {
        entered.happen();
        while (isRemembered()) {
            std::this_thread::yield();
        }
        hasReturned = true;
    };
    const auto api = startApi();
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, document);
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, document);
    entered.await();
    wrensim_forget_receivers();
    EXPECT_TRUE(hasReturned);
    ASSERT_TRUE(wrensim_wait_idle());
    EXPECT_EQ(receiver->all().size(), 1u) << "the second document finds nobody";
}

TEST_F(Receivers, ReceiverIsReleasedBeforeForgettingReturns) {
    Event entered;
    Event release;
    receiver->inside = [&] {
        entered.happen();
        release.await();
    };
    const auto api = startApi();
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, document);
    entered.await();
    const std::weak_ptr<test::Receiver> watched = receiver;
    receiver.reset();
    release.happen();
    wrensim_forget_receivers();
    EXPECT_TRUE(watched.expired());
}

TEST_F(Receivers, ForgettingInsideACallbackDoesNotWaitForIt) {
    receiver->inside = [] { wrensim_forget_receivers(); };
    const auto api = startApi();
    EXPECT_EQ(deliver(), wrensim_delivered);
    EXPECT_FALSE(isRemembered());
}

TEST_F(Receivers, WaitingForIdlenessInsideACallbackIsRefused) {
    std::atomic<bool> hasWaited = true;
    receiver->inside = [&] { hasWaited = wrensim_wait_idle(); };
    const auto api = startApi();
    deliver();
    EXPECT_FALSE(hasWaited);
}

TEST_F(Receivers, IdlenessComesAfterTheDocumentsThatWait) {
    const auto api = startApi();
    for (int i = 0; i < 100; ++i) {
        wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, document);
    }
    EXPECT_TRUE(wrensim_wait_idle());
    EXPECT_EQ(receiver->all().size(), 100u);
}

} // namespace
