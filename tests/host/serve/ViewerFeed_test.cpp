#include "host/serve/ViewerFeed.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

namespace json = boost::json;
using host::serve::Journal;
using host::serve::SharedText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A feed on a journal that the test writes, beside a module that does nothing.
class ViewerFeed : public ::testing::Test {
protected:
    ViewerFeed() { view.follow(); }

    void put(int count) {
        for (int i = 0; i < count; ++i) {
            journal.output({{"out", "info"}, {"text", "x"}});
        }
    }
    /// A message in short: its type, with what counts in it.
    static std::string shortened(const std::string& text) {
        const json::object message = json::parse(text).as_object();
        std::string words = message.at("type").as_string().c_str();
        if (const json::value* entries = message.if_contains("entries")) {
            const json::array& list = entries->as_array();
            words += list.empty() ? " none"
                                  : " " + json::serialize(list.front().at("seq")) + "-" +
                                        json::serialize(list.back().at("seq"));
        }
        for (const char* key : {"missed", "id", "error"}) {
            words += message.contains(key) ? " " + json::serialize(message.at(key)) : "";
        }
        return words;
    }
    /// All messages that there are.
    std::vector<std::string> all() {
        std::vector<std::string> messages;
        while (const SharedText message = feed.next()) {
            messages.push_back(shortened(*message));
        }
        return messages;
    }
    /// Greets, and forgets what the loading has journaled.
    void greet() {
        while (feed.next()) {
        }
        first = journal.latest();
    }
    std::string range(std::uint64_t from, std::uint64_t to) const {
        return " " + std::to_string(first + from) + "-" + std::to_string(first + to);
    }

    Journal journal{{600, std::size_t{1} << 30}};
    host::serve::MachineTracker tracker;
    host::serve::LiveHost host{{host::defaultModulePath(), 4, 0}, journal, tracker};
    host::serve::LiveView view{
        journal, tracker, host, {"module", "", "", false}, [](std::string_view) { return false; }};
    host::serve::ViewerFeed feed{view};
    std::uint64_t first = 0;
};

TEST_F(ViewerFeed, GreetsAndShowsThePictures) {
    put(3);
    EXPECT_THAT(all(), ElementsAre("hello 1-3", "screen", "machine"));
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(ViewerFeed, WithTheServiceWhereItHasBeenAsked) {
    view.askService();
    EXPECT_THAT(all(), ElementsAre("hello none", "screen", "machine", "service"));
    view.askService();
    feed.look();
    EXPECT_THAT(all(), IsEmpty()) << "nothing has changed but its clock";
}

TEST_F(ViewerFeed, BringsEntriesInBatches) {
    greet();
    put(600);
    EXPECT_THAT(all(), ElementsAre("entries" + range(1, 250), "entries" + range(251, 500),
                                   "entries" + range(501, 600)));
}

TEST_F(ViewerFeed, TellsWhatWasMissed) {
    greet();
    put(700);
    const std::vector<std::string> messages = all();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages.front(), "entries" + range(101, 350) + " 100");
    EXPECT_EQ(messages.back(), "entries" + range(601, 700));
}

TEST_F(ViewerFeed, PicturesComeBetweenTheEntriesOnceForEachLook) {
    greet();
    put(400);
    tracker.create();
    feed.look();
    EXPECT_THAT(all(), ElementsAre("entries" + range(1, 250), "machine", "entries" + range(251, 400)));
    tracker.dispose();
    EXPECT_THAT(all(), IsEmpty()) << "nobody has told the viewer to look";
    tracker.create();
    feed.look();
    EXPECT_THAT(all(), ElementsAre("machine")) << "the last one is enough";
}

TEST_F(ViewerFeed, RepliesComeBehindWhatHappenedBefore) {
    greet();
    put(300);
    feed.reply(1, "");
    feed.reply(std::nullopt, "no");
    put(10);
    EXPECT_EQ(feed.waitingReplies(), 2u);
    EXPECT_THAT(all(), ElementsAre("entries" + range(1, 250), "entries" + range(251, 310), "reply 1",
                                   "reply null \"no\""));
    EXPECT_EQ(feed.waitingReplies(), 0u);
}

TEST_F(ViewerFeed, HelloHoldsTheLastTwoThousand) {
    Journal longJournal({});
    for (int i = 0; i < 2'500; ++i) {
        longJournal.output({{"out", "info"}, {"text", "x"}});
    }
    host::serve::LiveView longView(longJournal, tracker, host, {"module", "{}", "[1]", true},
                                   [](std::string_view) { return false; });
    const std::string hello = *host::serve::ViewerFeed(longView).next();
    EXPECT_EQ(shortened(hello), "hello 501-2500");
    EXPECT_THAT(hello, ::testing::HasSubstr(R"("stand_in":true,"schema":{},"machine":[1],)"));
}

} // namespace
