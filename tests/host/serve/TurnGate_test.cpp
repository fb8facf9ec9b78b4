#include "host/serve/TurnGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace {

using host::serve::Turn;
using host::serve::TurnGate;

TEST(TurnGate, LetsOneInAtATime) {
    TurnGate gate;
    int inside = 0; // guarded by the gate alone
    std::atomic<int> most = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, isDocument = i == 0] {
            for (int round = 0; round < 500; ++round) {
                isDocument ? void(gate.enterWithDocument()) : gate.enter();
                most = std::max(most.load(), ++inside);
                --inside;
                gate.leave();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
}

TEST(TurnGate, DocumentWaitsForAPlainTurn) {
    TurnGate gate;
    std::atomic<bool> hasLeft = false;
    gate.enter();
    auto document = std::async(std::launch::async, [&] {
        const bool isIn = gate.enterWithDocument();
        EXPECT_TRUE(hasLeft);
        gate.leave();
        return isIn;
    });
    hasLeft = true;
    gate.leave();
    EXPECT_TRUE(document.get());
}

TEST(TurnGate, StoppingTurnTurnsDocumentsAway) {
    TurnGate gate;
    {
        const Turn turn(gate, Turn::Kind::Stopping);
        EXPECT_FALSE(gate.enterWithDocument());
        EXPECT_FALSE(gate.enterWithDocument());
    }
    EXPECT_TRUE(gate.enterWithDocument());
    gate.leave();
}

TEST(TurnGate, StoppingTurnMayWaitForTheDocumentsThread) {
    for (int round = 0; round < 100; ++round) {
        TurnGate gate;
        std::promise<void> isStopping;
        gate.enter();
        std::thread documents([&] {
            if (gate.enterWithDocument()) { // before the stop, or turned away by it
                gate.leave();
            }
            isStopping.get_future().wait();
            EXPECT_FALSE(gate.enterWithDocument());
        });
        std::thread stop([&] {
            const Turn turn(gate, Turn::Kind::Stopping);
            isStopping.set_value();
            documents.join();
        });
        gate.leave();
        stop.join();
    }
}

TEST(TurnGate, TurnsComeInTheOrderOfTheirAsking) {
    TurnGate gate;
    std::vector<int> order;
    gate.enter();
    std::thread first([&] {
        const Turn turn(gate, Turn::Kind::Plain);
        order.push_back(1);
    });
    gate.leave();
    first.join();
    const Turn turn(gate, Turn::Kind::Stopping);
    order.push_back(2);
    EXPECT_EQ(order, (std::vector{1, 2}));
}

} // namespace
