// The real module with the stand-in service, hosted as the server hosts it.
#include "host/serve/LiveHost.h"

#include "host/HostError.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

using host::serve::Journal;
using host::serve::JournalEntry;
using host::serve::JournalEntryPointer;
using host::serve::LifecycleStep;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const std::string document = R"({"version":"1","state":"active"})";

class LiveHost : public ::testing::Test {
protected:
    LiveHost() {
        journal.setSignal([this] {
            const std::lock_guard lock(mutex);
            changed.notify_all();
        });
        host = std::make_unique<host::serve::LiveHost>(
            host::serve::LiveHost::Options{host::defaultModulePath(), 0, 0}, journal, tracker);
    }

    /// Waits for the end of something that was asked for. @return what went wrong
    template <class Ask>
    static std::string outcome(Ask ask) {
        std::promise<std::string> end;
        ask([&](const std::string& error) { end.set_value(error); });
        return end.get_future().get();
    }
    std::string step(LifecycleStep step) {
        return outcome([&](auto done) { host->step(step, done); });
    }
    std::string event(const std::string& xml) {
        return outcome([&](auto done) { host->sendEvent(xml, done); });
    }
    std::string deliver(const std::string& json, unsigned count = 1) {
        return outcome([&](auto done) { host->deliver("StatusNotification", json, count, done); });
    }

    std::vector<JournalEntryPointer> entries() const { return journal.after(0, 1'000'000).entries; }
    /// Waits for an entry that holds a text. @return its place
    std::size_t waitFor(const std::string& text, std::size_t from = 0) {
        std::unique_lock lock(mutex);
        while (true) {
            const std::vector<JournalEntryPointer> all = entries();
            for (std::size_t i = from; i < all.size(); ++i) {
                if (boost::json::serialize(all[i]->line).find(text) != std::string::npos) {
                    return i;
                }
            }
            changed.wait(lock);
        }
    }
    std::vector<std::string> inputs() const {
        std::vector<std::string> list;
        for (const JournalEntryPointer& entry : entries()) {
            if (entry->isInput()) {
                list.push_back(boost::json::serialize(entry->line));
            }
        }
        return list;
    }
    /// Whether no input began before the outputs of the one before it were all there.
    bool areInputsOneByOne() const {
        std::uint64_t running = 0;
        for (const JournalEntryPointer& entry : entries()) {
            if (entry->isInput()) {
                running = entry->sequence;
            } else if (entry->input != 0 && entry->input != running) {
                ADD_FAILURE() << entry->sequence << " belongs to " << entry->input << ", not to " << running;
                return false;
            }
        }
        return true;
    }

    std::mutex mutex;
    std::condition_variable changed;
    Journal journal{{1'000'000, std::size_t{1} << 30}};
    host::serve::MachineTracker tracker;
    std::unique_ptr<host::serve::LiveHost> host;
};

TEST_F(LiveHost, BeginsAndEndsAsAHostDoes) {
    EXPECT_EQ(step(LifecycleStep::Create), "");
    EXPECT_EQ(tracker.states().root, "Unregistered_s");
    EXPECT_EQ(host->facts().identity, "com.norvane.vantor.presentation.quill");
    EXPECT_EQ(host->facts().label, "Wren Gate");
    EXPECT_EQ(host->facts().version, "5.1.11.2143");
    EXPECT_EQ(step(LifecycleStep::Register), "");
    EXPECT_EQ(tracker.states().root, "Registered_s");
    EXPECT_EQ(step(LifecycleStep::Start), "");
    EXPECT_EQ(tracker.states().root, "Started_s");
    host->close();
    EXPECT_EQ(tracker.states().root, "");
    std::vector<std::string> calls;
    for (const std::string& input : inputs()) {
        if (input.find("deliver") == std::string::npos) {
            calls.push_back(input);
        }
    }
    EXPECT_THAT(
        calls, ElementsAre(
                   R"({"do":"create","name":"com.norvane.vantor.presentation"})",
                   R"({"do":"register","arguments":"","callbacks":"host","translator":true,"handle":1})",
                   R"({"do":"start"})", R"({"do":"stop"})", R"({"do":"unregister"})", R"({"do":"dispose"})"));
    EXPECT_TRUE(areInputsOneByOne());
}

TEST_F(LiveHost, BrokenRuleIsJournaledWithItsInput) {
    host->begin();
    const std::string late = R"(<vtguiEvent id="nothing_OnPress"/>)";
    EXPECT_EQ(event(late), "EventNotification answered -10");
    const std::size_t place = waitFor("\"out\":\"violation\"");
    const std::vector<JournalEntryPointer> all = entries();
    EXPECT_EQ(
        boost::json::serialize(all[place]->line),
        R"({"out":"violation","rule":"unknown-event","text":"\"nothing_OnPress\" is about to be sent"})");
    EXPECT_EQ(all[place]->input, all[waitFor("\"do\":\"event\"")]->sequence);
}

TEST_F(LiveHost, DocumentIsAnInputOnAThreadOfItsOwn) {
    host->begin();
    const std::size_t place = waitFor(R"("do":"deliver","document":"StatusNotification")");
    waitFor("\"out\":\"notice\"", place);
    const std::vector<JournalEntryPointer> all = entries();
    EXPECT_NE(all[place]->thread, all.front()->thread);
    EXPECT_NE(all[place]->thread, all[waitFor("\"do\":\"create\"")]->thread);
    EXPECT_EQ(all[place + 1]->input, all[place]->sequence);
    EXPECT_EQ(all[place + 1]->thread, all[place]->thread);
}

TEST_F(LiveHost, LogOfTheLoadingBelongsToNoInput) {
    host->begin();
    waitFor("\"do\":\"create\"");
    for (const JournalEntryPointer& entry : entries()) {
        if (entry->isInput()) {
            break;
        }
        EXPECT_EQ(entry->input, 0u);
    }
}

TEST_F(LiveHost, CallThatThePluginRefusesIsToldByItsNumber) {
    EXPECT_EQ(step(LifecycleStep::Start), "there is no plugin object");
    EXPECT_EQ(step(LifecycleStep::Dispose), "there is no plugin object");
    EXPECT_EQ(event("<x/>"), "there is no plugin object");
    EXPECT_EQ(step(LifecycleStep::Create), "");
    EXPECT_EQ(step(LifecycleStep::Create), "there is a plugin object already");
    EXPECT_EQ(step(LifecycleStep::Start), "Start answered -10");
    EXPECT_EQ(step(LifecycleStep::Stop), "Stop answered -10");
    EXPECT_EQ(event("no xml"), "EventNotification answered -10");
    EXPECT_EQ(deliver(document), "nobody listens to the service");
    EXPECT_EQ(step(LifecycleStep::Dispose), "");
    EXPECT_EQ(step(LifecycleStep::Dispose), "there is no plugin object");
}

TEST_F(LiveHost, BackendFailsAndHeals) {
    const auto fail = [this](const std::string& operation) {
        return outcome([&](auto done) { host->fail(operation, 5, 2, done); });
    };
    EXPECT_EQ(fail("Nothing"), "the backend has no operation Nothing");
    EXPECT_EQ(fail("CreateApi"), "");
    EXPECT_EQ(step(LifecycleStep::Create), "");
    EXPECT_EQ(step(LifecycleStep::Register), "");
    EXPECT_EQ(step(LifecycleStep::Start), "Start answered -10");
    EXPECT_EQ(outcome([&](auto done) { host->heal(done); }), "");
    EXPECT_EQ(step(LifecycleStep::Start), "");
    EXPECT_THAT(inputs(),
                ::testing::Contains(R"({"do":"backend","operation":"CreateApi","result":5,"times":2})"));
    EXPECT_THAT(inputs(), ::testing::Contains(R"({"do":"backend","reset":true})"));
}

TEST_F(LiveHost, ServiceIsSteered) {
    host->loadScenario(R"({"device":{"enrolled":true},"delays":{"first_status":0}})");
    EXPECT_EQ(outcome([&](auto done) { host->setPace(0, done); }), "");
    EXPECT_EQ(outcome([&](auto done) { host->setKnobs(R"({"certificate":"bad"})", done); }),
              "/certificate: 'bad' is none of ok, expired, revoked, rejected, internal_error, unknown");
    EXPECT_EQ(outcome([&](auto done) { host->setKnobs(R"({"certificate":"revoked"})", done); }), "");
    EXPECT_EQ(outcome([&](auto done) { host->startScenario("{}", done); }), "");
    EXPECT_NE(outcome([&](auto done) { host->startScenario("[]", done); }), "");
    EXPECT_THROW(host->loadScenario("{"), host::HostError);
    EXPECT_THAT(inputs(), ElementsAre(HasSubstr(R"({"do":"scenario")"), R"({"do":"pace","percent":0})",
                                      HasSubstr(R"({"do":"service")"), HasSubstr(R"({"do":"service")"),
                                      R"({"do":"scenario","json":"{}"})", R"({"do":"scenario","json":"[]"})",
                                      R"({"do":"scenario","json":"{"})"));
}

TEST_F(LiveHost, InputsRunOneAtATime) {
    host->begin();
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(deliver(document, 20), "");
        EXPECT_EQ(event("<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>"), "");
    }
    host->close();
    EXPECT_TRUE(areInputsOneByOne());
}

TEST_F(LiveHost, StopsInTheMiddleOfAFloodOfDocuments) {
    for (int round = 0; round < 10; ++round) {
        host->begin();
        deliver(document, 200); // may find nobody yet in the first round, and that is fine too
        EXPECT_EQ(step(LifecycleStep::Stop), "");
        EXPECT_EQ(step(LifecycleStep::Unregister), "");
        EXPECT_EQ(step(LifecycleStep::Dispose), "");
    }
    host->close();
    EXPECT_TRUE(areInputsOneByOne());
}

TEST_F(LiveHost, DisposesInTheMiddleOfAFloodOfDocuments) {
    for (int round = 0; round < 10; ++round) {
        host->begin();
        deliver(document, 200);
        EXPECT_EQ(step(LifecycleStep::Dispose), "");
    }
    EXPECT_TRUE(areInputsOneByOne());
}

TEST_F(LiveHost, SlowHostHurriesWhenItCloses) {
    host->setSlowness(5'000'000);
    host->begin();
    waitFor("\"out\":\"notice\""); // which takes longer than any test from here on
    std::string refused;
    host->sendEvent("<x/>", [&](const std::string& error) { refused = error; });
    host->close();
    EXPECT_EQ(refused, "the host is closing");
    EXPECT_EQ(event("<x/>"), "the host is closing");
}

TEST_F(LiveHost, SlownessEndsAtOnceWhereItIsTakenBack) {
    host->setSlowness(5'000'000);
    host->begin();
    waitFor("\"out\":\"notice\"");
    host->setSlowness(0);
    EXPECT_EQ(event("<vtguiEvent id=\"x\"/>"), "EventNotification answered -10");
}

TEST_F(LiveHost, CanBeClosedTwice) {
    EXPECT_EQ(step(LifecycleStep::Create), "");
    host->close();
    host->close();
    EXPECT_EQ(inputs().back(), R"({"do":"dispose"})");
}

TEST(LiveHostLog, LowRecordsAreLeftOut) {
    Journal journal({});
    host::serve::MachineTracker tracker;
    {
        host::serve::LiveHost host({host::defaultModulePath(), 1, 0}, journal, tracker);
        std::promise<void> end;
        host.begin();
        host.step(LifecycleStep::Stop, [&](const std::string&) { end.set_value(); });
        end.get_future().wait();
        EXPECT_EQ(tracker.states().root, "Registered_s") << "the trace is followed all the same";
    }
    for (const JournalEntryPointer& entry : journal.after(0, 10'000).entries) {
        if (entry->line.contains("severity")) {
            EXPECT_GE(entry->line.at("severity").as_int64(), 1);
        }
    }
}

TEST(LiveHostModule, ModuleThatCannotBeLoadedIsAnError) {
    Journal journal({});
    host::serve::MachineTracker tracker;
    EXPECT_THROW(host::serve::LiveHost({"/nonexistent.so", 0, 0}, journal, tracker), host::HostError);
}

} // namespace
