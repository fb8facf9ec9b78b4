#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using test::Lines;
using test::only;
using test::screens;
using test::textOf;
using test::withoutTrace;

class Caching : public testing::Test {
protected:
    void SetUp() override { session.start(); }

    Lines status(const boost::json::value& document) {
        return session.deliver("StatusNotification", textOf(document));
    }
    Lines dataplane(const boost::json::value& document) {
        return session.deliver("DataplaneNotification", textOf(document));
    }
    static bool mentions(const Lines& lines, const std::string& part) {
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& line) { return line.find(part) != std::string::npos; });
    }

    test::ModuleSession session;
};

const std::string statusUnchanged =
    "log 0 PresentationPluginImpl::actionCacheStatusNotificationAndUpdateUI: No change "
    "to current Status Notification.";
const std::string alertsChanged = "[struct Started_s][process_event] struct AlertListChanged_e";

TEST_F(Caching, AStatusEqualToTheCachedOneRendersNothing) {
    status(test::notEnrolledStatusDocument());
    const Lines lines = status(test::notEnrolledStatusDocument());
    EXPECT_EQ(screens(lines), Lines{"apilog statusnotification"});
    EXPECT_EQ(withoutTrace(lines).back(), statusUnchanged);
    EXPECT_FALSE(mentions(lines, alertsChanged));
}

TEST_F(Caching, EqualityLooksAtTheRecordAndNotAtTheText) {
    status(test::notEnrolledStatusDocument());
    EXPECT_EQ(withoutTrace(session.deliver("StatusNotification",
                                           " " + textOf(test::notEnrolledStatusDocument()) + "\n"))
                  .back(),
              statusUnchanged);
}

/// All that can be seen but the copy of the document.
Lines withoutNotices(Lines lines) {
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("notice "); });
    return lines;
}

TEST_F(Caching, TheVerySameTextIsTreatedLikeAnEqualOne) {
    for (const auto& [kind, document] : {std::pair("StatusNotification", test::enrolledStatusDocument()),
                                         std::pair("DataplaneNotification", test::dataplaneDocument(2, 0))}) {
        const std::string text = textOf(document);
        session.deliver(kind, text);
        const Lines same = session.deliver(kind, text);
        const Lines equal = session.deliver(kind, text + " ");
        EXPECT_EQ(withoutNotices(same), withoutNotices(equal));
        EXPECT_EQ(screens(same), screens(equal));
        EXPECT_EQ(screens(same).size(), 1u);
        EXPECT_EQ(session.deliver(kind, text), same);
    }
}

TEST_F(Caching, ATextThatCameBackIsAChangeAgain) {
    const std::string first = textOf(test::enrolledStatusDocument());
    const std::string second = textOf(test::notEnrolledStatusDocument());
    for (const std::string& text : {first, second, first, second}) {
        EXPECT_TRUE(mentions(screens(session.deliver("StatusNotification", text)), "tile update"));
    }
}

TEST_F(Caching, ATextThatWasRefusedIsNotTakenForTheCachedOne) {
    const std::string cached = textOf(test::notEnrolledStatusDocument());
    const std::string refused = textOf(test::enrolledStatusDocument());
    session.deliver("StatusNotification", cached);
    session.run(R"({"do":"stop"})");
    session.deliver("StatusNotification", refused);
    session.run(R"({"do":"start"})");
    EXPECT_TRUE(mentions(screens(session.deliver("StatusNotification", refused)), "tile update Good"));
}

TEST_F(Caching, AStatusThatIsTooLongToBeKeptIsHeldAgainstTheCachedOneAllTheSame) {
    const auto longStatus = [](const char* version) {
        return test::with(
            test::with(test::enrolledStatusDocument(), "/version", boost::json::string(version)), "/padding",
            boost::json::string(std::string(300'000, 'x')));
    };
    EXPECT_TRUE(mentions(screens(status(longStatus("1"))), "tile update Good"));
    EXPECT_EQ(withoutTrace(status(longStatus("1"))).back(), statusUnchanged);
    EXPECT_TRUE(mentions(screens(status(longStatus("2"))), "tile update Good"));
    EXPECT_EQ(withoutTrace(status(longStatus("2"))).back(), statusUnchanged);
}

TEST_F(Caching, TheFirstStatusCountsAsAChangeOfState) {
    EXPECT_TRUE(mentions(screens(status(test::notEnrolledStatusDocument())), "toast"));
}

TEST_F(Caching, AnEmptyStateIsAFirstStatusLikeAnyOther) {
    const Lines lines = status(test::with(test::notEnrolledStatusDocument(), "/state", ""));
    EXPECT_EQ(screens(lines),
              (Lines{"apilog statusnotification", "stats-overview update", "stats-details update"}));
    // The next one then changes the state, and may show its toast.
    EXPECT_TRUE(mentions(screens(status(test::notEnrolledStatusDocument())), "toast"));
}

TEST_F(Caching, AStatusThatDiffersInSubstateOnlyIsRenderedWithoutToast) {
    status(test::notEnrolledStatusDocument());
    const Lines shown = screens(status(test::with(test::notEnrolledStatusDocument(), "/substate", "other")));
    EXPECT_TRUE(mentions(shown, "tile update"));
    EXPECT_FALSE(mentions(shown, "toast"));
}

TEST_F(Caching, OrderInAListCounts) {
    auto second = test::enrolledStatusDocument();
    auto& enrollments = second.as_object()["enrollments"].as_array();
    enrollments.push_back(enrollments[0]);
    enrollments[1].as_object()["id"] = "enrollment-2";
    status(second);
    std::swap(enrollments[0], enrollments[1]);
    EXPECT_TRUE(mentions(screens(status(second)), "tile update"));
}

TEST_F(Caching, ADataplaneNotificationEqualToTheCachedOneRendersNothing) {
    status(test::enrolledStatusDocument());
    dataplane(test::dataplaneDocument(1, 0));
    const Lines lines = dataplane(test::dataplaneDocument(1, 0));
    EXPECT_EQ(screens(lines), Lines{"apilog dataplanenotification"});
    EXPECT_EQ(withoutTrace(lines).back(),
              "log 0 PresentationPluginImpl::actionCacheDataplaneNotificationAndUpdateUI: "
              "No change to current Dataplane Notification.");
}

TEST_F(Caching, ADataplaneNotificationBeforeAnyStatusIsCachedAndDrawsNothing) {
    const Lines lines = dataplane(test::dataplaneDocument(1, 0));
    EXPECT_EQ(screens(lines), Lines{"apilog dataplanenotification"});
    EXPECT_EQ(withoutTrace(lines).back(),
              "log 2 PresentationPluginImpl::renderStatsUpdates: Received empty Status Notification.");
    EXPECT_FALSE(mentions(lines, alertsChanged));
    // The first status is rendered with it.
    EXPECT_TRUE(mentions(screens(status(test::enrolledStatusDocument())), "tile update Attention"));
}

TEST_F(Caching, TheAlertRegionHearsOfAChangeAndOfAnEmptyListOnly) {
    EXPECT_TRUE(mentions(status(test::enrolledStatusDocument()), alertsChanged));
    EXPECT_TRUE(mentions(dataplane(test::dataplaneDocument(2, 0)), alertsChanged));
    // Another status with the same alerts: nothing new.
    EXPECT_FALSE(
        mentions(status(test::with(test::enrolledStatusDocument(), "/substate", "x")), alertsChanged));
    EXPECT_TRUE(mentions(dataplane(test::dataplaneDocument(1, 0)), alertsChanged));
    EXPECT_TRUE(mentions(dataplane(test::dataplaneDocument(0, 0)), alertsChanged));
    EXPECT_TRUE(mentions(status(test::enrolledStatusDocument()), alertsChanged));
}

// During an enrollment.

class CachingWhileEnrolling : public Caching {
protected:
    void SetUp() override {
        Caching::SetUp();
        status(test::notEnrolledStatusDocument());
        session.press("quill_tile_enroll_action_btn");
    }
};

TEST_F(CachingWhileEnrolling, DocumentsAreCachedSilentlyAndRenderedAtTheEnd) {
    EXPECT_EQ(screens(status(test::enrolledStatusDocument())), Lines{"apilog statusnotification"});
    EXPECT_EQ(screens(dataplane(test::dataplaneDocument(1, 0))), Lines{"apilog dataplanenotification"});
    session.deliver("EnrollmentStatusNotification", textOf(test::enrollmentStatusDocument("started")));
    const Lines shown = screens(session.deliver(
        "EnrollmentStatusNotification", textOf(test::enrollmentStatusDocument("complete", "cancelled"))));
    EXPECT_TRUE(mentions(shown, "tile update Attention \"Tile 1\"")) << testing::PrintToString(shown);
    EXPECT_EQ(shown.back().substr(0, 8), "adv-sync");
}

TEST_F(CachingWhileEnrolling, AnEqualStatusIsOnlyLogged) {
    EXPECT_EQ(withoutTrace(status(test::notEnrolledStatusDocument())).back(),
              "log 0 PresentationPluginImpl::actionOnlyCacheStatusNotification: No change to current Status "
              "Notification.");
    dataplane(test::dataplaneDocument(1, 0));
    EXPECT_EQ(
        withoutTrace(dataplane(test::dataplaneDocument(1, 0))).back(),
        "log 0 PresentationPluginImpl::actionOnlyCacheDataplaneNotification: No change to current Dataplane "
        "Notification.");
}

TEST_F(CachingWhileEnrolling, AnErrorStatusRendersAtOnceBeforeTheAbort) {
    const Lines lines = status(test::errorStatusDocument());
    EXPECT_TRUE(mentions(screens(lines), "tile update Error"));
    EXPECT_TRUE(mentions(lines, "Displaying internal enrollment status: Aborted"));
}

} // namespace
