#include "common2/util/LentObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace {

struct Lamp {
    int brightness = 7;
};
struct Device {
    virtual ~Device() = default;
    int number = 3;
};
struct Switch : Device {
    int position = 9;
};

TEST(LentObject, PointersLeadToTheObject) {
    Lamp lamp;
    const common2::LentObject<Lamp> lent(lamp);
    const std::weak_ptr<Lamp> observed = lent.pointer();
    const std::shared_ptr<Lamp> held = observed.lock();
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(held.get(), &lamp);
    EXPECT_EQ(held->brightness, 7);
    EXPECT_EQ(observed.use_count(), 2); // the lender's and this
}

TEST(LentObject, PointersAreOfOneFamily) {
    Lamp lamp;
    const common2::LentObject<Lamp> lent(lamp);
    const std::weak_ptr<Lamp> first = lent.pointer();
    const std::weak_ptr<Lamp> second = lent.pointer();
    EXPECT_FALSE(first.owner_before(second));
    EXPECT_FALSE(second.owner_before(first));
}

TEST(LentObject, ABaseOfTheObjectCanBeObserved) {
    Switch device;
    const common2::LentObject<Switch> lent(device);
    const std::weak_ptr<Device> observed = lent.pointer();
    EXPECT_EQ(observed.lock()->number, 3);
}

TEST(LentObject, HasNoDeleter) {
    Lamp lamp;
    const common2::LentObject<Lamp> lent(lamp);
    EXPECT_EQ(std::get_deleter<std::default_delete<Lamp>>(lent.pointer().lock()), nullptr);
}

TEST(LentObject, NobodyGetsTheObjectAfterTheEnd) {
    Lamp lamp;
    common2::LentObject<Lamp> lent(lamp);
    const std::weak_ptr<Lamp> observed = lent.pointer();
    lent.end();
    EXPECT_TRUE(observed.expired());
    EXPECT_EQ(observed.lock(), nullptr);
}

TEST(LentObject, PointersMayOutliveTheLenderAndTheObject) {
    std::weak_ptr<Lamp> observed;
    {
        Lamp lamp;
        const common2::LentObject<Lamp> lent(lamp);
        observed = lent.pointer();
    }
    const std::weak_ptr<Lamp> copy = observed;
    observed.reset();
    EXPECT_EQ(copy.lock(), nullptr);
}

TEST(LentObject, TheEndWaitsForThoseThatUseTheObject) {
    std::optional<Lamp> lamp(std::in_place);
    common2::LentObject<Lamp> lent(*lamp);
    std::atomic<bool> isInUse = false;
    std::atomic<bool> isEnding = false;
    int seen = 0;
    std::thread user([&, observed = lent.pointer()] {
        const std::shared_ptr<Lamp> held = observed.lock();
        isInUse = true;
        isInUse.notify_one();
        isEnding.wait(false);
        seen = held->brightness; // a sanitizer reports it if the object has gone
    });
    isInUse.wait(false);
    isEnding = true;
    isEnding.notify_one();
    lent.end();
    lamp.reset();
    EXPECT_EQ(seen, 7);
    user.join();
}

TEST(LentObject, TheLastToUseItMayBeAnyThread) {
    for (int round = 0; round < 200; ++round) {
        Lamp lamp;
        common2::LentObject<Lamp> lent(lamp);
        std::atomic<int> running = 0;
        const auto use = [&, observed = lent.pointer()]() mutable {
            ++running;
            while (observed.lock() != nullptr) {
                std::this_thread::yield();
            }
            observed.reset();
        };
        std::thread first(use);
        std::thread second(use);
        while (running != 2) {
            std::this_thread::yield();
        }
        lent.end();
        first.join();
        second.join();
    }
}

} // namespace
