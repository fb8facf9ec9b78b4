#include "tests/boundary/BoundaryPlugin.h"
#include "tests/boundary/LifecycleModel.h"
#include "tests/boundary/MemoryBackend.h"
#include "tests/support/QuietLog.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

// Every order of the host's lifecycle calls, held against a model that knows three states and nothing else.

namespace {

using test::BoundaryHost;
using test::BoundaryPlugin;
using test::Call;
using test::callNames;
using test::Interface;
using test::MemoryBackend;

/// A plugin with its own host and the model of it.
struct Subject {
    explicit Subject(Interface interface)
        : plugin(test::makePlugin(interface)) {}

    std::int32_t take(Call call) {
        switch (call) {
        case Call::Register:
            return plugin->Register(*host);
        case Call::Start:
            return plugin->Start();
        case Call::Stop:
            return plugin->Stop(0);
        case Call::Unregister:
            return plugin->Unregister();
        case Call::Create:
        case Call::Dispose:
            break;
        }
        return 0;
    }

    std::unique_ptr<BoundaryHost> host = std::make_unique<BoundaryHost>();
    std::unique_ptr<BoundaryPlugin> plugin;
    test::LifecycleModel model;
};

using Order = std::vector<Call>;

std::string describe(const Order& order) {
    std::string text;
    for (const Call call : order) {
        text.append(callNames[static_cast<std::size_t>(call)]).append(" ");
    }
    return text;
}

class LifecycleOrders : public testing::TestWithParam<Interface> {
protected:
    void SetUp() override { MemoryBackend::instance().reset(); }
    void TearDown() override { EXPECT_EQ(MemoryBackend::instance().connectionCount(), 0u); }

    /// A running plugin tells of its end from within.
    static void dispose(Subject& subject, const Order& order) {
        const std::size_t stops = subject.model.stops + (subject.model.isRunning() ? 1 : 0);
        subject.plugin.reset();
        ASSERT_EQ(subject.host->stops, stops) << describe(order);
    }

    /// Plays one order. A second `create` makes a second plugin, to which the calls go until it is disposed
    /// of.
    void play(const Order& order) {
        std::vector<Subject> subjects;
        for (const Call call : order) {
            if (call == Call::Create) {
                subjects.emplace_back(GetParam());
                ASSERT_NE(subjects.back().plugin, nullptr);
                continue;
            }
            Subject& subject = subjects.back();
            if (call == Call::Dispose) {
                dispose(subject, order);
                subjects.pop_back();
                continue;
            }
            const std::size_t notices = subject.host->notices;
            const std::int32_t expected = subject.model.take(call);
            ASSERT_EQ(subject.take(call), expected) << describe(order);
            ASSERT_EQ(subject.host->stops, subject.model.stops) << describe(order);
            // The first screen comes with a start and nothing at any other time.
            ASSERT_EQ(subject.host->notices - notices, call == Call::Start && expected == 0 ? 5u : 0u)
                << describe(order);
        }
        std::size_t running = 0;
        for (const Subject& subject : subjects) {
            running += subject.model.isRunning() ? 1 : 0;
        }
        ASSERT_EQ(MemoryBackend::instance().connectionCount(), running) << describe(order);
        for (Subject& subject : subjects) {
            dispose(subject, order);
        }
    }

    /// Plays every order of that length that calls no plugin where there is none. Shorter ones are their
    /// beginnings.
    void playAll(Order& order, std::size_t length, int plugins) {
        if (order.size() == length) {
            ++played;
            play(order);
            return;
        }
        for (std::size_t number = 0; number < callNames.size() && !HasFatalFailure(); ++number) {
            const auto call = static_cast<Call>(number);
            if (call != Call::Create && plugins == 0) {
                break; // the other calls need one
            }
            order.push_back(call);
            playAll(order, length, plugins + (call == Call::Create) - (call == Call::Dispose));
            order.pop_back();
        }
    }

    test::QuietLog quiet;
    std::size_t played = 0;
};

// Of up to seven calls; of six where that takes minutes. Every step has been seen by then.
TEST_P(LifecycleOrders, EveryOrderOfCallsAnswersAsTheModelDoes) {
    Order order;
    playAll(order, WREN_LONGEST_ORDER, 0);
    EXPECT_EQ(played, WREN_LONGEST_ORDER == 6 ? 5'016u : 28'071u);
}

TEST_P(LifecycleOrders, StartsThatFailLeaveThePluginRegistered) {
    MemoryBackend& backend = MemoryBackend::instance();
    for (const auto call : {test::BackendCall::CreateApi, test::BackendCall::Start}) {
        Subject subject(GetParam());
        ASSERT_EQ(subject.plugin->Register(*subject.host), 0);
        for (int round = 0; round < 3; ++round) {
            backend.answer(call, QuillApiResult::NotConnected);
            EXPECT_EQ(subject.plugin->Start(), -10);
            EXPECT_EQ(subject.plugin->Stop(0), -10);
            EXPECT_EQ(backend.connectionCount(), 0u);
            backend.answer(call, QuillApiResult::Success);
            EXPECT_EQ(subject.plugin->Start(), 0);
            EXPECT_EQ(backend.connectionCount(), 1u);
            EXPECT_EQ(subject.plugin->Stop(1), 0);
        }
        EXPECT_EQ(subject.host->stops, 3u);
        EXPECT_EQ(subject.plugin->Unregister(), 0);
    }
}

TEST_P(LifecycleOrders, PluginsAreIndependentOfEachOther) {
    std::vector<Subject> subjects;
    for (int number = 0; number < 5; ++number) {
        subjects.emplace_back(GetParam());
    }
    constexpr std::array<Call, 5> way{Call::Register, Call::Start, Call::Stop, Call::Start, Call::Unregister};
    for (std::size_t round = 0; round < 60; ++round) {
        for (std::size_t number = 0; number < subjects.size(); ++number) {
            Subject& subject = subjects[number];
            const Call call = way[(round * (number + 1) + number) % way.size()];
            const std::int32_t expected = subject.model.take(call);
            EXPECT_EQ(subject.take(call), expected) << "plugin " << number << ", round " << round;
            EXPECT_EQ(subject.host->stops, subject.model.stops) << "plugin " << number << ", round " << round;
        }
    }
    subjects.clear();
    EXPECT_EQ(MemoryBackend::instance().connectionCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(BothInterfaces, LifecycleOrders, testing::Values(Interface::Cpp, Interface::C),
                         [](const auto& parameter) {
                             return std::string(parameter.param == Interface::Cpp ? "Cpp" : "C");
                         });

} // namespace
