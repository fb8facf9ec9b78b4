#include "presentation-plugin/alerts/WrenAlert.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

namespace {

WrenAlertLocalAction localAction() { return {"Continue", "Verify", "In a new window.", "re-enroll", "e-1"}; }
WrenAlertRemoteAction remoteAction() { return {"Help", "https://help.example/"}; }

std::shared_ptr<const IWrenAlertAction> sharedLocalAction(std::string value) {
    return std::make_shared<WrenAlertLocalAction>("label", "title", "description", "type", std::move(value));
}

WrenAlert_t alertWithAction(std::shared_ptr<const IWrenAlertAction> action) {
    WrenAlert_t alert;
    alert.title = "title";
    alert.action = std::move(action);
    return alert;
}

/// Alerts that differ in nothing but what their action is about.
WrenAlertList_t listOf(std::size_t first, std::size_t count) {
    WrenAlertList_t list;
    for (std::size_t number = first; number < first + count; ++number) {
        list.alerts.push_back(alertWithAction(sharedLocalAction(std::to_string(number))));
    }
    return list;
}

// Actions

TEST(WrenAlertLocalAction, IsWrittenAsJson) {
    EXPECT_EQ(boost::json::serialize(localAction().toJson()),
              R"({"type":"local","label":"Continue",)"
              R"("detailPage":{"title":"Verify","description":"In a new window."},)"
              R"("kestrelSuiteEvent":{"type":"re-enroll","value":"e-1"}})");
}

TEST(WrenAlertRemoteAction, IsWrittenAsJson) {
    EXPECT_EQ(boost::json::serialize(remoteAction().toJson()),
              R"({"type":"remote","label":"Help","url":"https://help.example/"})");
}

TEST(WrenAlertLocalAction, EqualsInAllFiveFields) {
    const WrenAlertLocalAction action("a", "b", "c", "d", "e");
    EXPECT_TRUE(action.equals(WrenAlertLocalAction("a", "b", "c", "d", "e")));
    EXPECT_FALSE(action.equals(WrenAlertLocalAction("x", "b", "c", "d", "e")));
    EXPECT_FALSE(action.equals(WrenAlertLocalAction("a", "x", "c", "d", "e")));
    EXPECT_FALSE(action.equals(WrenAlertLocalAction("a", "b", "x", "d", "e")));
    EXPECT_FALSE(action.equals(WrenAlertLocalAction("a", "b", "c", "x", "e")));
    EXPECT_FALSE(action.equals(WrenAlertLocalAction("a", "b", "c", "d", "x")));
}

TEST(WrenAlertRemoteAction, EqualsInBothFields) {
    const WrenAlertRemoteAction action("a", "b");
    EXPECT_TRUE(action.equals(WrenAlertRemoteAction("a", "b")));
    EXPECT_FALSE(action.equals(WrenAlertRemoteAction("x", "b")));
    EXPECT_FALSE(action.equals(WrenAlertRemoteAction("a", "x")));
}

// Alerts

TEST(WrenAlert, EqualityCoversEveryField) {
    const auto differs = [](auto change) {
        WrenAlert_t alert;
        change(alert);
        return !(alert == WrenAlert_t());
    };
    EXPECT_FALSE(differs([](WrenAlert_t&) {}));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.type = 1; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.priority = 1; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.timestamp = 1; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.tile_message = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.tile_title = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.title = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.short_message = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.long_message = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.toast_title = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.toast_message = "x"; }));
    EXPECT_TRUE(differs([](WrenAlert_t& alert) { alert.action = sharedLocalAction("1"); }));
}

TEST(WrenAlert, ActionsAreComparedByContent) {
    EXPECT_EQ(alertWithAction(sharedLocalAction("1")), alertWithAction(sharedLocalAction("1")));
    EXPECT_NE(alertWithAction(sharedLocalAction("1")), alertWithAction(sharedLocalAction("2")));
    EXPECT_NE(alertWithAction(nullptr), alertWithAction(sharedLocalAction("1")));
    EXPECT_NE(alertWithAction(sharedLocalAction("1")), alertWithAction(nullptr));
}

TEST(WrenAlert, ActionsOfTwoClassesAreNeverEqual) {
    const auto local = alertWithAction(std::make_shared<WrenAlertLocalAction>("a", "b", "", "", ""));
    const auto remote = alertWithAction(std::make_shared<WrenAlertRemoteAction>("a", "b"));
    EXPECT_NE(local, remote);
    EXPECT_NE(remote, local);
}

// Lists

TEST(WrenAlertList, EqualityCoversAlertsAndTexts) {
    const auto differs = [](auto change) {
        WrenAlertList_t list = listOf(1, 2);
        change(list);
        return !(list == listOf(1, 2));
    };
    EXPECT_FALSE(differs([](WrenAlertList_t&) {}));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.alerts.pop_back(); }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { std::swap(list.alerts[0], list.alerts[1]); }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.section_title = "x"; }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.section_description = "x"; }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.section_action_label = "x"; }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.list_title = "x"; }));
    EXPECT_TRUE(differs([](WrenAlertList_t& list) { list.list_description = "x"; }));
}

TEST(HasNewAlert, IsFalseForTheSameAlerts) {
    EXPECT_FALSE(hasNewAlert({}, {}));
    EXPECT_FALSE(hasNewAlert(listOf(1, 3), listOf(1, 3)));
}

TEST(HasNewAlert, IsTrueForAnAlertThatTheOldListLacks) {
    EXPECT_TRUE(hasNewAlert(listOf(1, 1), {}));
    EXPECT_TRUE(hasNewAlert(listOf(1, 4), listOf(1, 3)));
    EXPECT_TRUE(hasNewAlert(listOf(2, 3), listOf(1, 3)));
}

TEST(HasNewAlert, IsFalseIfAlertsHaveOnlyGone) {
    EXPECT_FALSE(hasNewAlert({}, listOf(1, 3)));
    EXPECT_FALSE(hasNewAlert(listOf(2, 1), listOf(1, 3)));
}

TEST(HasNewAlert, DoesNotMindTheOrder) {
    WrenAlertList_t list = listOf(1, 5);
    std::reverse(list.alerts.begin(), list.alerts.end());
    EXPECT_FALSE(hasNewAlert(list, listOf(1, 5)));
}

TEST(HasNewAlert, DoesNotCountEqualAlertsTwice) {
    WrenAlertList_t twice = listOf(1, 1);
    twice.alerts.push_back(twice.alerts[0]);
    EXPECT_FALSE(hasNewAlert(twice, listOf(1, 1)));
}

TEST(HasNewAlert, DoesNotMindTheListsOwnTexts) {
    WrenAlertList_t list = listOf(1, 2);
    list.section_title = "x";
    EXPECT_FALSE(hasNewAlert(list, listOf(1, 2)));
}

TEST(HasNewAlert, TellsAlertsApartByEveryField) {
    const auto isNew = [](auto change) {
        WrenAlertList_t list = listOf(1, 2);
        change(list.alerts[1]);
        return hasNewAlert(list, listOf(1, 2));
    };
    EXPECT_FALSE(isNew([](WrenAlert_t&) {}));
    EXPECT_TRUE(isNew([](WrenAlert_t& alert) { alert.priority = 1; }));
    EXPECT_TRUE(isNew([](WrenAlert_t& alert) { alert.timestamp = 1; }));
    EXPECT_TRUE(isNew([](WrenAlert_t& alert) { alert.toast_message = "x"; }));
    EXPECT_TRUE(isNew([](WrenAlert_t& alert) { alert.action = nullptr; }));
}

/// The plain way: every pair.
bool hasNewAmongAllPairs(const WrenAlertList_t& newList, const WrenAlertList_t& oldList) {
    return std::ranges::any_of(newList.alerts, [&](const WrenAlert_t& alert) {
        return std::ranges::find(oldList.alerts, alert) == oldList.alerts.end();
    });
}

TEST(HasNewAlert, FindsWhatComparingEveryPairFinds) {
    std::mt19937 random(7);
    const auto anyList = [&random] {
        WrenAlertList_t list;
        const std::size_t kinds = random() % 30 + 1;
        for (std::size_t count = random() % 40; count > 0; --count) {
            list.alerts.push_back(alertWithAction(sharedLocalAction(std::to_string(random() % kinds))));
        }
        return list;
    };
    for (int round = 0; round < 2000; ++round) {
        const WrenAlertList_t oldList = anyList();
        WrenAlertList_t newList = round % 2 == 0 ? anyList() : oldList;
        if (!newList.alerts.empty()) { // one in the same place, or moved to the end
            std::iter_swap(newList.alerts.begin() +
                               static_cast<std::ptrdiff_t>(random() % newList.alerts.size()),
                           newList.alerts.end() - 1);
        }
        ASSERT_EQ(hasNewAlert(newList, oldList), hasNewAmongAllPairs(newList, oldList)) << round;
    }
}

TEST(HasNewAlert, FindsTheOneNewAlertAmongTenThousandMovedOnes) {
    const WrenAlertList_t oldList = listOf(0, 10000);
    WrenAlertList_t newList = listOf(0, 10000);
    std::reverse(newList.alerts.begin(), newList.alerts.end());
    EXPECT_FALSE(hasNewAlert(newList, oldList));
    newList.alerts.back().action = sharedLocalAction("10000");
    EXPECT_TRUE(hasNewAlert(newList, oldList));
}

} // namespace
