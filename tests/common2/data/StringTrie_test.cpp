#include "common2/data/StringTrie.h"

#include "tests/support/LogCapture.h"

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

namespace {

constexpr int nothing = -1;

int match(const StringTrie<int>& trie, std::string_view query) {
    const int* entry = trie.GetLongestPrefixMatch(query);
    return entry ? *entry : nothing;
}

TEST(StringTrie, EmptyTreeMatchesNothing) { EXPECT_EQ(match(StringTrie<int>(), "anything"), nothing); }

TEST(StringTrie, WildcardKeyMatchesWhatBeginsWithIt) {
    StringTrie<int> trie;
    trie.Insert("net", 1, true);
    EXPECT_EQ(match(trie, "net"), 1);
    EXPECT_EQ(match(trie, "network"), 1);
    EXPECT_EQ(match(trie, "ne"), nothing);
    EXPECT_EQ(match(trie, "Net"), nothing);
    EXPECT_EQ(match(trie, "a net"), nothing);
}

TEST(StringTrie, LongerKeyWins) {
    StringTrie<int> trie;
    trie.Insert("net.tls", 2, true);
    trie.Insert("net", 1, true);
    EXPECT_EQ(match(trie, "net.tls.x"), 2);
    EXPECT_EQ(match(trie, "net.tls"), 2);
    EXPECT_EQ(match(trie, "net.tl"), 1);
    EXPECT_EQ(match(trie, "network"), 1);
}

TEST(StringTrie, KeyWithoutWildcardMatchesOnlyItself) {
    StringTrie<int> trie;
    trie.Insert("net", 1, true);
    trie.Insert("net.tls", 2, false);
    EXPECT_EQ(match(trie, "net.tls"), 2);
    EXPECT_EQ(match(trie, "net.tls.x"), 1);
    EXPECT_EQ(match(trie, "net.tl"), 1);
}

TEST(StringTrie, SecondInsertOfAKeyReplacesEntryAndWildcard) {
    StringTrie<int> trie;
    trie.Insert("net", 1, true);
    trie.Insert("net", 2, false);
    EXPECT_EQ(match(trie, "net"), 2);
    EXPECT_EQ(match(trie, "network"), nothing);
    trie.Insert("net", 3, true);
    EXPECT_EQ(match(trie, "network"), 3);
}

TEST(StringTrie, SplitLeavesNoEntryAtTheSplit) {
    StringTrie<int> trie;
    trie.Insert("network", 1, true);
    trie.Insert("nettle", 2, true);
    EXPECT_EQ(match(trie, "net"), nothing);
    EXPECT_EQ(match(trie, "nets"), nothing);
    EXPECT_EQ(match(trie, "networks"), 1);
    EXPECT_EQ(match(trie, "nettles"), 2);
}

TEST(StringTrie, EmptyWildcardKeyMatchesEveryTextThatIsNotEmpty) {
    StringTrie<int> trie;
    trie.Insert("", 1, true);
    trie.Insert("net", 2, true);
    EXPECT_EQ(match(trie, "x"), 1);
    EXPECT_EQ(match(trie, "ne"), 1);
    EXPECT_EQ(match(trie, "network"), 2);
    EXPECT_EQ(match(trie, ""), nothing);
}

TEST(StringTrie, EmptyKeyWithoutWildcardIsLoggedAndNotAdded) {
    const test::LogCapture capture;
    StringTrie<int> trie;
    trie.Insert("", 1, false);
    EXPECT_EQ(match(trie, "x"), nothing);
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].severity, 2);
    EXPECT_EQ(records[0].function, "StringTrie::Insert");
    EXPECT_EQ(records[0].message, "invalid empty non-wildcard key");
}

TEST(StringTrie, EmptyQueryIsLoggedAndFindsNothing) {
    StringTrie<int> trie;
    trie.Insert("", 1, true);
    const test::LogCapture capture;
    EXPECT_EQ(trie.GetLongestPrefixMatch(""), nullptr);
    const auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].severity, 2);
    EXPECT_EQ(records[0].function, "StringTrie::GetLongestPrefixMatch");
    EXPECT_EQ(records[0].message, "empty query");
}

TEST(StringTrie, KeysAreBytes) {
    StringTrie<int> trie;
    trie.Insert(std::string("a\0b", 3), 1, true);
    trie.Insert("\xC3\xA4", 2, true);
    trie.Insert("\xC3\xB6", 3, true);
    EXPECT_EQ(match(trie, std::string("a\0bc", 4)), 1);
    EXPECT_EQ(match(trie, "a"), nothing);
    EXPECT_EQ(match(trie, "\xC3\xA4x"), 2);
    EXPECT_EQ(match(trie, "\xC3\xB6"), 3);
}

TEST(StringTrie, VisitsEveryEntry) {
    StringTrie<int> trie;
    trie.Insert("", 1, true);
    trie.Insert("network", 2, true);
    trie.Insert("nettle", 3, false);
    trie.Insert("net", 4, true);
    std::multiset<int> seen;
    trie.ForEach([&seen](int entry) { seen.insert(entry); });
    EXPECT_EQ(seen, (std::multiset<int>{1, 2, 3, 4}));
}

TEST(StringTrie, DeepTreeNeedsNoDeepStack) {
    boost::thread::attributes smallStack;
    smallStack.set_stack_size(256 * 1024);
    boost::thread worker(smallStack, [] {
        constexpr std::size_t depth = 2000;
        StringTrie<std::size_t> trie;
        std::string key;
        while (key.size() < depth) {
            key += 'a';
            trie.Insert(key, key.size(), true);
        }
        EXPECT_EQ(*trie.GetLongestPrefixMatch(key + "b"), depth);
        EXPECT_EQ(*trie.GetLongestPrefixMatch("aaab"), 3u);
        std::size_t visited = 0;
        trie.ForEach([&visited](std::size_t) { ++visited; });
        EXPECT_EQ(visited, depth);
    });
    worker.join();
}

/// What the tree is to answer, the slow way.
class NaiveMatcher {
public:
    void insert(const std::string& key, int entry, bool wildcard) { keys[key] = {entry, wildcard}; }

    int match(const std::string& query) const {
        for (std::size_t length = query.size() + 1; length-- > 0;) {
            const auto found = keys.find(query.substr(0, length));
            if (found != keys.end() && (found->second.second || length == query.size())) {
                return found->second.first;
            }
        }
        return nothing;
    }

private:
    std::map<std::string, std::pair<int, bool>> keys;
};

TEST(StringTrie, AnswersAsANaiveSearchDoes) {
    std::mt19937 random(20240607);
    const auto number = [&random](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(random);
    };
    const auto text = [&](int shortest) {
        std::string letters(static_cast<std::size_t>(number(shortest, 7)), 'a');
        for (char& letter : letters) {
            letter = static_cast<char>('a' + number(0, 2));
        }
        return letters;
    };
    for (int round = 0; round < 200; ++round) {
        StringTrie<int> trie;
        NaiveMatcher naive;
        const int keyCount = number(0, 40);
        for (int entry = 0; entry < keyCount; ++entry) {
            const bool wildcard = number(0, 1) == 1;
            const std::string key = text(wildcard ? 0 : 1);
            trie.Insert(key, entry, wildcard);
            naive.insert(key, entry, wildcard);
        }
        for (int query = 0; query < 200; ++query) {
            const std::string asked = text(1);
            ASSERT_EQ(match(trie, asked), naive.match(asked)) << asked << " in round " << round;
        }
    }
}

} // namespace
