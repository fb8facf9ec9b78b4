#include "tests/backend-sim/BackendTest.h"

#include <gmock/gmock.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using test::Event;
using ::testing::ElementsAre;

class DocumentWatch : public test::BackendTest {
protected:
    DocumentWatch() { wrensim_watch_documents(before, after, this); }
    ~DocumentWatch() override { wrensim_watch_documents(nullptr, nullptr, nullptr); }

    static bool before(void* context, std::uint64_t, WrenSimDocument document, const char* json) {
        auto& watch = *static_cast<DocumentWatch*>(context);
        watch.note("before " + std::to_string(document) + " " + json);
        return !watch.turnsAway;
    }
    static void after(void* context, std::uint64_t, WrenSimDocument document) {
        static_cast<DocumentWatch*>(context)->note("after " + std::to_string(document));
    }
    void note(std::string text) {
        const std::lock_guard lock(mutex);
        EXPECT_TRUE(noted.empty() || thread == std::this_thread::get_id());
        thread = std::this_thread::get_id();
        noted.push_back(std::move(text));
    }
    WrenSimDelivery deliver(WrenSimDocument document, const char* json) const {
        return wrensim_deliver_and_wait(WRENSIM_LATEST_API, document, json);
    }

    std::mutex mutex;
    std::vector<std::string> noted;
    std::thread::id thread;
    bool turnsAway = false;
};

TEST_F(DocumentWatch, IsToldBeforeAndAfterEachDocumentOnItsThread) {
    const auto api = startApi();
    receiver->inside = [this] { note("inside"); };
    EXPECT_EQ(deliver(wrensim_dataplane_notification, "a"), wrensim_delivered);
    EXPECT_EQ(deliver(wrensim_status_notification, "b"), wrensim_delivered);
    EXPECT_THAT(noted, ElementsAre("before 4 a", "inside", "after 4", "before 0 b", "inside", "after 0"));
    EXPECT_EQ(thread, receiver->lastThread());
}

TEST_F(DocumentWatch, DocumentThatIsTurnedAwayFindsNoReceiver) {
    const auto api = startApi();
    turnsAway = true;
    EXPECT_EQ(deliver(wrensim_status_notification, "a"), wrensim_no_receiver);
    EXPECT_THAT(noted, ElementsAre("before 0 a"));
    EXPECT_TRUE(receiver->all().empty());
}

TEST_F(DocumentWatch, HearsNothingOfDocumentsWithoutReceiver) {
    const auto api = makeApi();
    EXPECT_EQ(deliver(wrensim_status_notification, "a"), wrensim_no_receiver);
    EXPECT_TRUE(noted.empty());
}

TEST_F(DocumentWatch, EachHalfMayBeMissing) {
    const auto api = startApi();
    wrensim_watch_documents(before, nullptr, this);
    EXPECT_EQ(deliver(wrensim_status_notification, "a"), wrensim_delivered);
    wrensim_watch_documents(nullptr, after, this);
    EXPECT_EQ(deliver(wrensim_status_notification, "b"), wrensim_delivered);
    EXPECT_THAT(noted, ElementsAre("before 0 a", "after 0"));
}

TEST_F(DocumentWatch, MayUseTheLibrary) {
    const auto api = startApi();
    wrensim_watch_documents(
        [](void*, std::uint64_t number, WrenSimDocument, const char*) {
            EXPECT_TRUE(wrensim_has_receiver(number));
            EXPECT_EQ(wrensim_set_result("Nothing", 1, 1), false);
            wrensim_watch_documents(nullptr, nullptr, nullptr);
            return true;
        },
        after, this);
    EXPECT_EQ(deliver(wrensim_status_notification, "a"), wrensim_delivered);
    EXPECT_THAT(noted, ElementsAre("after 0")) << "the pair that was told before is told after";
}

TEST_F(DocumentWatch, ForgettingReceiversWaitsForTheDocumentUnderWay) {
    const auto api = startApi();
    Event entered;
    Event release;
    receiver->inside = [&] {
        entered.happen();
        release.await();
    };
    wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, "a");
    entered.await();
    std::thread releaser([&] { release.happen(); });
    wrensim_forget_receivers();
    EXPECT_THAT(noted, ElementsAre("before 0 a", "after 0"));
    releaser.join();
}

} // namespace
