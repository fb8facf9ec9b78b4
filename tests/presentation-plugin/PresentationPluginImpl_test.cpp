#include "presentation-plugin/PresentationPluginImpl.h"

#include "tests/support/Documents.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Slots of the machine that no document and no click can reach, or not with these values: called directly.

namespace {

using Lines = std::vector<std::string>;

class QuietHost : public IPresentationCB, public ITranslator {
public:
    Lines notices;
    std::int32_t Notify(std::uintptr_t, const char* xml) override {
        notices.emplace_back(xml);
        return 0;
    }
    std::int32_t StopDone(std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
};

class PluginSlots : public testing::Test {
protected:
    PluginSlots() {
        plugin.Register("", 1, &host, &host);
        log.clear();
    }

    /// What was logged and shown since the last time: "severity message", then each notice's status line or
    /// id.
    Lines logged() {
        Lines lines;
        for (const test::LoggedRecord& record : log.records()) {
            lines.push_back(std::to_string(record.severity) + " " + record.message);
        }
        log.clear();
        return lines;
    }
    bool hasShown(const std::string& part) const {
        return std::any_of(host.notices.begin(), host.notices.end(),
                           [&](const std::string& xml) { return xml.find(part) != std::string::npos; });
    }

    test::LogCapture log;
    QuietHost host;
    PresentationPluginImpl plugin{std::weak_ptr<IQuillApiFactory>()};
    /// The machine's side is a private base, which only this kind of cast reaches.
    IPresentationPluginSmCallbacks& slots = (IPresentationPluginSmCallbacks&)plugin;
    bool alertsPending = false;
};

std::shared_ptr<const StatusNotification_t> shared(StatusNotification_t status) {
    return std::make_shared<const StatusNotification_t>(std::move(status));
}

// Null records.

TEST_F(PluginSlots, ANullStatusIsLoggedAndTheCachedOneStays) {
    slots.actionCacheStatusNotificationAndUpdateUI(shared(test::enrolledStatus()), alertsPending);
    logged();
    host.notices.clear();
    slots.actionCacheStatusNotificationAndUpdateUI(nullptr, alertsPending);
    EXPECT_EQ(logged(), Lines{"2 Received empty Status Notification."});
    EXPECT_TRUE(host.notices.empty());
    slots.actionOnlyUpdateUI(alertsPending);
    EXPECT_TRUE(hasShown("Wren Gate is active."));
}

TEST_F(PluginSlots, ANullDataplaneNotificationIsLoggedAndTheCachedOneStays) {
    slots.actionCacheDataplaneNotificationAndUpdateUI(nullptr, alertsPending);
    EXPECT_EQ(logged(), Lines{"2 Received empty Dataplane Notification."});
    EXPECT_FALSE(alertsPending);
    EXPECT_TRUE(host.notices.empty());
}

TEST_F(PluginSlots, ANullStatusWhileEnrollingEmptiesTheCacheSoThatTheEndDrawsNothing) {
    slots.actionCacheStatusNotificationAndUpdateUI(shared(test::enrolledStatus()), alertsPending);
    slots.actionOnlyCacheStatusNotification(nullptr);
    logged();
    host.notices.clear();
    slots.actionOnlyUpdateUI(alertsPending);
    EXPECT_EQ(logged(), Lines{"2 Can't update from empty Dataplane Notification."});
    EXPECT_TRUE(host.notices.empty());
    // Until the next status, which then counts as a first one.
    slots.actionCacheStatusNotificationAndUpdateUI(shared(test::notEnrolledStatus()), alertsPending);
    EXPECT_TRUE(hasShown("wren_toast_popup"));
}

TEST_F(PluginSlots, TwoNullStatusesInARowAreNotUnchanged) {
    slots.actionOnlyCacheStatusNotification(nullptr);
    slots.actionOnlyCacheStatusNotification(nullptr);
    slots.actionOnlyCacheDataplaneNotification(nullptr);
    EXPECT_EQ(logged(), Lines{});
}

// Values outside the enumerations.

TEST_F(PluginSlots, ValuesOutsideTheirEnumerationAreOnlyLogged) {
    slots.actionDisplayEnrollmentStatusInternal(static_cast<EnrollmentInternalStatus>(4));
    EXPECT_EQ(logged(), (Lines{"0 Displaying internal enrollment status: ",
                               "3 Invalid Internal Enrollment Status received: "}));
    slots.actionDisplayUnenrollmentStatusInternal(static_cast<UnenrollmentInternalStatus>(2));
    EXPECT_EQ(logged(), Lines{"3 Invalid Internal Unenrollment Status received: "});
    slots.actionDisplayEnrollmentStatus(test::enrollmentStatus(EnrollmentStatus::Unknown));
    EXPECT_EQ(logged(), Lines{"3 Invalid enrollment status received: Unknown"});
    slots.actionDisplayEnrollmentStatus(test::enrollmentStatus(static_cast<EnrollmentStatus>(4)));
    EXPECT_EQ(logged(), Lines{"3 Invalid enrollment status received: "});
    slots.actionDisplayUnenrollmentStatus(test::unenrollmentStatus(UnenrollmentStatus::Unknown));
    EXPECT_EQ(logged(), Lines{"3 Invalid Unenrollment Status received: Unknown"});
    slots.actionDisplayAlertDialog(static_cast<AlertDialogAction>(3));
    EXPECT_EQ(logged(), Lines{});
    EXPECT_TRUE(host.notices.empty());
}

TEST_F(PluginSlots, CompletionsWithSubstatusUnknownAreOnlyLogged) {
    slots.actionDisplayEnrollmentStatus(
        test::enrollmentStatus(EnrollmentStatus::Complete, EnrollmentSubstatus::Unknown));
    EXPECT_EQ(logged(), (Lines{"0 Displaying enrollment status: Complete (Unknown)",
                               "3 Invalid enrollment substatus receivedUnknown"}));
    slots.actionDisplayUnenrollmentStatus(
        test::unenrollmentStatus(UnenrollmentStatus::Complete, UnenrollmentSubstatus::Unknown));
    EXPECT_EQ(logged(), (Lines{"0 Displaying unenrollment status: Complete (Unknown)",
                               "3 Invalid unenrollment substatus receivedUnknown"}));
    EXPECT_TRUE(host.notices.empty());
}

// Branches that stand ready without a row that leads to them.

TEST_F(PluginSlots, AnUnenrollmentErrorStandsReady) {
    slots.actionDisplayUnenrollmentStatus(
        test::unenrollmentStatus(UnenrollmentStatus::Error, UnenrollmentSubstatus::InternalError));
    EXPECT_EQ(logged()[0], "0 Displaying unenrollment status: Error (InternalError)");
    EXPECT_TRUE(hasShown("state=\"Attention\""));
    EXPECT_TRUE(hasShown("value=\"Unenrollment error\""));
}

TEST_F(PluginSlots, StartedTwiceDrawsAgainAndTheSecondIdCounts) {
    auto started = test::enrollmentStatus(EnrollmentStatus::Started);
    slots.actionDisplayEnrollmentStatus(started);
    started.enrollment_id = "second";
    slots.actionDisplayEnrollmentStatus(started);
    EXPECT_EQ(host.notices.size(), 2u);
    auto request = test::enrollmentAuthRequest();
    request.enrollment_id = "second";
    slots.actionDisplayEnrollmentAuthRequest(request);
    EXPECT_TRUE(hasShown("browse_for_cookie"));
}

TEST_F(PluginSlots, DismissingWithoutContextIsLoggedAndSendsNothing) {
    slots.actionDismissDataplaneAuth();
    EXPECT_EQ(logged(), Lines{"2 No in progress dataplane authentication request to dismiss"});
    EXPECT_TRUE(host.notices.empty());
}

TEST_F(PluginSlots, AToastWithAnEmptyTextIsNotShown) {
    auto status = test::enrolledStatus();
    status.posture_connectivity = PostureConnectivity::Unreachable; // its alert has no toast texts
    slots.actionCacheStatusNotificationAndUpdateUI(shared(status), alertsPending);
    EXPECT_TRUE(alertsPending);
    EXPECT_TRUE(hasShown("Plover Desktop error"));
    EXPECT_FALSE(hasShown("wren_toast_popup"));
}

TEST_F(PluginSlots, ARequestWithoutConnectionFailsLikeOneThatTheBackendRefuses) {
    EXPECT_THROW(slots.actionApiTriggerPostureReports({"1"}), ApiError_ex);
    EXPECT_EQ(logged(), Lines{"3 Couldn't trigger posture reports: NotInitialized"});
    slots.actionStopApi();
    EXPECT_EQ(logged(), Lines{});
}

TEST_F(PluginSlots, AnExpiredFactoryIsToldByTheExceptionToo) {
    try {
        slots.actionStartApi();
        FAIL();
    } catch (const ApiError_ex& failure) {
        EXPECT_STREQ(failure.what(), "QUILL API factory not initialized");
    }
}

} // namespace
