#include "host/serve/Journal.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using host::serve::Journal;
using host::serve::JournaledInput;
using host::serve::JournalEntry;
using host::serve::JournalEntryPointer;
using host::serve::JournalSlice;
using ::testing::ElementsAre;

/// An entry as "sequence thread input line".
std::string shortened(const JournalEntryPointer& entry) {
    return std::to_string(entry->sequence) + " " + std::to_string(entry->thread) + " " +
           std::to_string(entry->input) + " " + boost::json::serialize(entry->line);
}

std::vector<std::string> shortened(const std::vector<JournalEntryPointer>& entries) {
    std::vector<std::string> texts;
    for (const JournalEntryPointer& entry : entries) {
        texts.push_back(shortened(entry));
    }
    return texts;
}

std::vector<std::string> all(const Journal& journal) { return shortened(journal.after(0, 1'000).entries); }

TEST(Journal, OutputBelongsToTheInputOfItsThread) {
    Journal journal({});
    journal.output({{"out", "early"}});
    journal.beginInput({{"do", "first"}});
    journal.output({{"out", "a"}});
    std::thread([&] {
        journal.output({{"out", "lost"}});
        const JournaledInput input(journal, {{"do", "second"}});
        journal.output({{"out", "b"}});
    }).join();
    journal.output({{"out", "c"}});
    journal.endInput();
    journal.output({{"out", "late"}});
    journal.outputOf(2, {{"out", "later"}});
    EXPECT_THAT(all(journal),
                ElementsAre(R"(1 1 0 {"out":"early"})", R"(2 1 0 {"do":"first"})", R"(3 1 2 {"out":"a"})",
                            R"(4 2 0 {"out":"lost"})", R"(5 2 0 {"do":"second"})", R"(6 2 5 {"out":"b"})",
                            R"(7 1 2 {"out":"c"})", R"(8 1 0 {"out":"late"})", R"(9 1 2 {"out":"later"})"));
    EXPECT_EQ(journal.latest(), 9u);
}

TEST(Journal, KeepsNoMoreThanItsLimit) {
    Journal journal({3, 1'000'000});
    for (int i = 1; i <= 5; ++i) {
        journal.output({{"out", i}});
    }
    EXPECT_THAT(all(journal), ElementsAre(R"(3 1 0 {"out":3})", R"(4 1 0 {"out":4})", R"(5 1 0 {"out":5})"));
    EXPECT_EQ(journal.after(0, 10).missed, 2u);
    EXPECT_EQ(journal.after(1, 10).missed, 1u);
    EXPECT_EQ(journal.after(2, 10).missed, 0u);
    EXPECT_EQ(journal.after(4, 10).entries.size(), 1u);
    EXPECT_EQ(journal.after(5, 10).entries.size(), 0u);
    EXPECT_EQ(journal.after(99, 10).entries.size(), 0u);
    EXPECT_THAT(shortened(journal.after(3, 1).entries), ElementsAre(R"(4 1 0 {"out":4})"));
}

TEST(Journal, LongTextsCount) {
    Journal journal({1'000, 10'000});
    const std::string text(4'000, 'x');
    for (int i = 0; i < 5; ++i) {
        journal.output({{"out", text}});
    }
    EXPECT_EQ(journal.after(0, 10).entries.size(), 2u);
    journal.output({{"out", std::string(1'000'000, 'x')}});
    EXPECT_EQ(journal.after(0, 10).entries.size(), 1u) << "the last one is always there";
    journal.output({{"out", "x"}});
    EXPECT_EQ(journal.after(0, 10).entries.size(), 1u);
}

TEST(Journal, SliceMayBeLimitedByItsBytes) {
    Journal journal({});
    for (int i = 0; i < 5; ++i) {
        journal.output({{"out", std::string(10'000, 'x')}});
    }
    EXPECT_EQ(journal.after(0, 10, 25'000).entries.size(), 2u);
    EXPECT_EQ(journal.after(0, 10, 1).entries.size(), 1u);
    EXPECT_EQ(journal.after(0, 3, 1'000'000).entries.size(), 3u);
}

TEST(Journal, HandsEveryEntryOnceToWhoFollowsIt) {
    Journal journal({1, 1'000'000});
    int signals = 0;
    journal.setSignal([&] { ++signals; });
    journal.output({{"out", 1}});
    journal.output({{"out", 2}});
    EXPECT_EQ(signals, 2);
    EXPECT_THAT(shortened(journal.takeNew()), ElementsAre(R"(1 1 0 {"out":1})", R"(2 1 0 {"out":2})"));
    EXPECT_THAT(journal.takeNew(), ElementsAre());
}

TEST(Journal, IsWrittenByManyThreads) {
    Journal journal({});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 100; ++round) {
                const JournaledInput input(journal, {{"do", "x"}});
                journal.output({{"out", "y"}});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<JournalEntryPointer> entries = journal.after(0, 1'000).entries;
    ASSERT_EQ(entries.size(), 800u);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i]->sequence, i + 1);
        if (!entries[i]->isInput()) {
            ASSERT_GT(entries[i]->input, 0u);
            EXPECT_EQ(entries[static_cast<std::size_t>(entries[i]->input) - 1]->thread, entries[i]->thread);
        }
    }
}

TEST(Journal, TimeIsThePresent) {
    Journal journal({});
    journal.output({{"out", "x"}});
    constexpr std::int64_t year2020 = 1'577'836'800'000;
    EXPECT_GT(journal.after(0, 1).entries.front()->time, year2020);
}

} // namespace
