#include "presentation-plugin/xml/CEventStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

struct NamedKind {
    std::uint32_t value;
    const char* name;
};

TEST(EventStoreId, EveryKindHasItsNumberAndName) {
    const NamedKind kinds[] = {
        {0, "ENROLL_ACTION"},
        {1, "ENROLL_TOAST_ACTION"},
        {2, "ENROLL_CANCEL_ACTION"},
        {3, "UNENROLL_ACTION"},
        {4, "CONFIG_SYNC_ACTION"},
        {5, "ENROLLMENT_BROWSER_END_URL_REACHED"},
        {6, "ENROLLMENT_BROWSER_CLOSE"},
        {7, "ENROLLMENT_BROWSER_ERROR"},
        {8, "DATAPLANE_AUTH_BROWSER_END_URL_REACHED"},
        {9, "DATAPLANE_AUTH_BROWSER_CLOSE"},
        {10, "DATAPLANE_AUTH_BROWSER_ERROR"},
        {11, "ALERT_BROWSER_CLOSE"},
        {12, "ALERT_BROWSER_ERROR"},
        {13, "ERROR_DETAILS_ACTION"},
        {14, "ERROR_DETAILS_TOAST_ACTION"},
        {15, "AUTH_VERIFY_ACTION"},
        {16, "AUTH_VERIFY_TOAST_ACTION"},
        {17, "ERROR_POPUP_CLOSE"},
        {18, "LOCAL_BROWSE_EVENT"},
        {19, "EVENT_INVALID"},
    };
    for (const NamedKind& kind : kinds) {
        EXPECT_EQ(eventStoreIdName(static_cast<EventStoreId>(kind.value)), kind.name);
    }
    EXPECT_EQ(static_cast<std::uint32_t>(EventStoreId::EVENT_INVALID), 19u);
    EXPECT_EQ(eventStoreIdName(static_cast<EventStoreId>(20)), "");
}

TEST(CEventStore, FindsControlsOfTheMainScreenAndOfDialogs) {
    CEventStore store;
    store.Add("button", EventStoreId::ENROLL_ACTION, nullptr);
    store.Add(std::string("close"), EventStoreId::ERROR_POPUP_CLOSE, "dialog");
    EXPECT_EQ(store.Lookup("button"), EventStoreId::ENROLL_ACTION);
    EXPECT_EQ(store.Lookup("close"), EventStoreId::ERROR_POPUP_CLOSE);
    EXPECT_EQ(store.Lookup("Close"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(store.Lookup("clos"), EventStoreId::EVENT_INVALID);
}

TEST(CEventStore, NullDoesNothingAndFindsNothing) {
    CEventStore store;
    store.Add(nullptr, EventStoreId::ENROLL_ACTION, nullptr);
    store.Add(nullptr, EventStoreId::ENROLL_ACTION, "dialog");
    store.Remove(nullptr);
    EXPECT_EQ(store.Lookup(nullptr), EventStoreId::EVENT_INVALID);
}

TEST(CEventStore, AddingAKnownIdOverwritesIt) {
    CEventStore store;
    store.Add("id", EventStoreId::ENROLL_ACTION, nullptr);
    store.Add("id", EventStoreId::UNENROLL_ACTION, nullptr);
    EXPECT_EQ(store.Lookup("id"), EventStoreId::UNENROLL_ACTION);
    store.Add("inner", EventStoreId::ALERT_BROWSER_CLOSE, "dialog");
    store.Add("inner", EventStoreId::ALERT_BROWSER_ERROR, "dialog");
    EXPECT_EQ(store.Lookup("inner"), EventStoreId::ALERT_BROWSER_ERROR);
}

TEST(CEventStore, AnIdOfTheMainScreenWinsOverADialogs) {
    CEventStore store;
    store.Add("id", EventStoreId::ERROR_POPUP_CLOSE, "dialog");
    store.Add("id", EventStoreId::ENROLL_ACTION, nullptr);
    EXPECT_EQ(store.Lookup("id"), EventStoreId::ENROLL_ACTION);
}

TEST(CEventStore, DialogsAreSearchedInAscendingOrderOfTheirIds) {
    CEventStore store;
    store.Add("id", EventStoreId::ALERT_BROWSER_CLOSE, "b");
    store.Add("id", EventStoreId::ENROLLMENT_BROWSER_CLOSE, "a");
    EXPECT_EQ(store.Lookup("id"), EventStoreId::ENROLLMENT_BROWSER_CLOSE);
    store.Remove("a");
    EXPECT_EQ(store.Lookup("id"), EventStoreId::ALERT_BROWSER_CLOSE);
}

TEST(CEventStore, AfterRemovalOfADialogItsControlsAreInvalidAndTheMainScreensStillResolve) {
    CEventStore store;
    store.Add("tile", EventStoreId::ENROLL_ACTION, nullptr);
    store.Add("first", EventStoreId::ERROR_POPUP_CLOSE, "dialog");
    store.Add("second", EventStoreId::ERROR_POPUP_CLOSE, "dialog");
    store.Remove("dialog");
    store.Remove("unknown");
    EXPECT_EQ(store.Lookup("first"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(store.Lookup("second"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(store.Lookup("tile"), EventStoreId::ENROLL_ACTION);
}

TEST(CEventStore, MayBeReadWhileItIsWritten) {
    CEventStore store;
    store.Add("tile", EventStoreId::ENROLL_ACTION, nullptr);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int round = 0; round < 2000; ++round) {
            store.Add("inner", EventStoreId::ERROR_POPUP_CLOSE, "dialog");
            store.Remove("dialog");
        }
        done = true;
    });
    while (!done) {
        EXPECT_EQ(store.Lookup("tile"), EventStoreId::ENROLL_ACTION);
        const EventStoreId inner = store.Lookup("inner");
        EXPECT_TRUE(inner == EventStoreId::ERROR_POPUP_CLOSE || inner == EventStoreId::EVENT_INVALID);
    }
    writer.join();
}

} // namespace
