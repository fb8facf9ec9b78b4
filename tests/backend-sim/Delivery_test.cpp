#include "tests/backend-sim/BackendTest.h"

#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using test::Event;
using test::Received;
using ::testing::ElementsAre;

class Delivery : public test::BackendTest {
protected:
    Delivery() {
        const auto note = [](void* context, std::uint64_t api, const char* operation, const char*) {
            if (operation == std::string_view("Start")) {
                static_cast<std::vector<std::uint64_t>*>(context)->push_back(api);
            }
        };
        wrensim_observe(note, &started);
    }
    ~Delivery() override { wrensim_observe(nullptr, nullptr); }

    /// A callback that says when it was entered and waits until it may go on.
    void blockInside() {
        receiver->inside = [this] {
            entered.happen();
            release.await();
        };
    }

    std::vector<std::uint64_t> started; ///< numbers of the connections, in the order of their start
    Event entered;
    Event release;
};

TEST_F(Delivery, EachDocumentReachesItsCallback) {
    const auto api = startApi();
    for (const auto document : {wrensim_status_notification, wrensim_enrollment_status_notification,
                                wrensim_enrollment_auth_request, wrensim_unenrollment_status_notification,
                                wrensim_dataplane_notification}) {
        EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, document, "{}"), wrensim_delivered);
    }
    EXPECT_THAT(receiver->all(), ElementsAre(Received{"StatusNotification", "{}"},
                                             Received{"EnrollmentStatusNotification", "{}"},
                                             Received{"EnrollmentAuthRequest", "{}"},
                                             Received{"UnenrollmentStatusNotification", "{}"},
                                             Received{"DataplaneNotification", "{}"}));
}

TEST_F(Delivery, TextGoesOutAsItIs) {
    const auto api = startApi();
    for (const char* text : {"", "{not json", "\xff\xfe\x01", "\n"}) {
        ASSERT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, text),
                  wrensim_delivered);
        EXPECT_EQ(receiver->all().back().json, text);
    }
}

TEST_F(Delivery, TextIsCopied) {
    const auto api = startApi();
    std::string text = "first";
    ASSERT_EQ(wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, text.c_str()),
              wrensim_delivered);
    text = "other";
    EXPECT_EQ(receiver->waitFor(1).front().json, "first");
}

TEST_F(Delivery, RefusesNullTextAndUnknownDocument) {
    const auto api = startApi();
    EXPECT_EQ(wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, nullptr), wrensim_refused);
    EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, nullptr),
              wrensim_refused);
    EXPECT_EQ(wrensim_deliver(WRENSIM_LATEST_API, static_cast<WrenSimDocument>(5), "{}"), wrensim_refused);
    EXPECT_THAT(receiver->all(), ElementsAre());
}

TEST_F(Delivery, UnknownConnectionHasNoReceiver) {
    const auto api = startApi();
    EXPECT_EQ(wrensim_deliver(UINT64_MAX, wrensim_status_notification, "{}"), wrensim_no_receiver);
    EXPECT_FALSE(wrensim_has_receiver(UINT64_MAX));
}

TEST_F(Delivery, GoesToTheConnectionThatWasNamed) {
    const auto first = startApi();
    const auto other = std::make_shared<test::Receiver>();
    const auto second = makeApi();
    ASSERT_EQ(second->Start(other), QuillApiResult::Success);
    ASSERT_EQ(started.size(), 2u);

    wrensim_deliver_and_wait(started[0], wrensim_status_notification, "first");
    wrensim_deliver_and_wait(started[1], wrensim_status_notification, "second");
    wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "latest");

    EXPECT_THAT(receiver->all(), ElementsAre(Received{"StatusNotification", "first"}));
    EXPECT_THAT(other->all(), ElementsAre(Received{"StatusNotification", "second"},
                                          Received{"StatusNotification", "latest"}));
}

TEST_F(Delivery, KeepsTheOrderOfTheCommands) {
    const auto api = startApi();
    std::vector<Received> expected;
    for (int i = 0; i < 1000; ++i) {
        expected.push_back({"DataplaneNotification", std::to_string(i)});
        ASSERT_EQ(
            wrensim_deliver(WRENSIM_LATEST_API, wrensim_dataplane_notification, expected.back().json.c_str()),
            wrensim_delivered);
    }
    expected.push_back({"StatusNotification", "last"});
    ASSERT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "last"),
              wrensim_delivered);
    EXPECT_EQ(receiver->all(), expected);
}

TEST_F(Delivery, RunsOnOneThreadOfItsOwn) {
    const auto api = startApi();
    wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "{}");
    const std::thread::id first = receiver->lastThread();
    EXPECT_NE(first, std::this_thread::get_id());
    std::thread([] {
        wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "{}");
    }).join();
    EXPECT_EQ(receiver->lastThread(), first);
}

TEST_F(Delivery, ReturnsAtOnceWhileACallbackIsBlocked) {
    blockInside();
    const auto api = startApi();
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "first");
    entered.await();
    EXPECT_EQ(wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "second"), wrensim_delivered);
    EXPECT_THAT(receiver->all(), ElementsAre());
    release.happen();
    EXPECT_EQ(receiver->waitFor(2).back().json, "second");
}

TEST_F(Delivery, StopAndTheEndOfTheApiObjectDoNotWaitForACallback) {
    blockInside();
    auto api = startApi();
    auto abandoned = makeApi();
    ASSERT_EQ(abandoned->Start(receiver), QuillApiResult::Success);
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "late");
    entered.await();

    EXPECT_EQ(api->Stop(), QuillApiResult::Success);
    api.reset();
    abandoned.reset();
    EXPECT_THAT(receiver->all(), ElementsAre());

    release.happen();
    EXPECT_EQ(receiver->waitFor(1).front().json, "late");
}

TEST_F(Delivery, ReceiverIsHeldDuringItsCallback) {
    const std::weak_ptr<test::Receiver> watched = receiver;
    bool wasAlive = false;
    receiver->inside = [&] {
        entered.happen();
        release.await();
        wasAlive = !watched.expired();
    };
    const auto api = startApi();
    std::thread waiter([] {
        EXPECT_EQ(wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "{}"),
                  wrensim_delivered);
    });
    entered.await();
    receiver.reset();
    release.happen();
    waiter.join();
    EXPECT_TRUE(wasAlive);
}

TEST_F(Delivery, ReceiverThatGoesWhileItsDocumentWaitsIsNotCalled) {
    blockInside();
    const auto blocked = startApi();
    auto leaving = std::make_shared<test::Receiver>();
    const auto api = makeApi();
    ASSERT_EQ(api->Start(leaving), QuillApiResult::Success);
    ASSERT_EQ(started.size(), 2u);
    wrensim_deliver(started[0], wrensim_status_notification, "blocks");
    entered.await();
    EXPECT_EQ(wrensim_deliver(started[1], wrensim_status_notification, "too late"), wrensim_delivered);
    WrenSimDelivery outcome = wrensim_delivered;
    Event aboutToWait;
    std::thread waiter([&] {
        aboutToWait.happen();
        outcome = wrensim_deliver_and_wait(started[1], wrensim_status_notification, "too late as well");
    });
    aboutToWait.await();
    leaving.reset();
    release.happen();
    waiter.join();
    EXPECT_EQ(outcome, wrensim_no_receiver);
    EXPECT_EQ(receiver->waitFor(1).size(), 1u);
}

TEST_F(Delivery, WaitingOnItsOwnThreadIsRefused) {
    const auto api = startApi();
    std::atomic<int> inner = -1;
    receiver->inside = [&] {
        inner = wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "inner");
    };
    wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, "outer");
    EXPECT_EQ(inner, wrensim_refused);
    EXPECT_EQ(receiver->all().size(), 1u);
}

TEST_F(Delivery, CallbackMayUseTheLibrary) {
    const auto api = startApi();
    std::atomic<bool> isFirst = true;
    receiver->inside = [&] {
        if (isFirst.exchange(false)) {
            EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
            wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "second");
            EXPECT_EQ(api->Stop(), QuillApiResult::Success);
        }
    };
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "first");
    EXPECT_EQ(receiver->waitFor(2).back().json, "second");
}

TEST_F(Delivery, ManyThreadsMayStartStopAndDeliver) {
    wrensim_observe(nullptr, nullptr);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 200; ++round) {
                const auto own = std::make_shared<test::Receiver>();
                auto api = makeApi();
                EXPECT_EQ(api->Start(own), QuillApiResult::Success);
                wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "{}");
                EXPECT_EQ(api->TriggerPostureReports(R"({"version":"1"})"), QuillApiResult::Success);
                EXPECT_EQ(api->Stop(), QuillApiResult::Success);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
