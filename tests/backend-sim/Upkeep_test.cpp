#include "tests/backend-sim/ServiceTest.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::startOfTime;
using ::testing::ElementsAre;

constexpr const char* enrolledStatus = "status active, enrolled enrollment-1";

/// An enrolled device.
class Upkeep : public test::ServiceTest {
protected:
    Upkeep() { load(R"("device":{"enrolled":true})"); }

    boost::json::value syncStatus(const char* key) {
        return lastEnrollment().at("config_sync_status").at(key);
    }
    boost::json::value certificate(const char* key) {
        return lastEnrollment().at("certificate_status").at(key);
    }
    boost::json::value flows(const char* key) { return lastEnrollment().at("dataplane_status").at(key); }
};

TEST_F(Upkeep, ConfigSyncMovesItsLastSuccess) {
    pass(5000);
    syncConfig("enrollment-1");
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    EXPECT_EQ(syncStatus("last_config_sync_success"), startOfTime + 5);
    EXPECT_EQ(syncStatus("fail_cnt_since_last_sync_success"), 0);
}

TEST_F(Upkeep, ConfigSyncOfAnotherEnrollmentIsIgnored) {
    syncConfig("other");
    EXPECT_THAT(sent(), ElementsAre());
    load("");
    syncConfig("enrollment-1");
    EXPECT_THAT(sent(), ElementsAre());
}

TEST_F(Upkeep, ConfigSyncFailsWithItsServer) {
    pass(5000);
    for (const char* server :
         {"unreachable", "bad_client_cert", "bad_server_cert", "bad_response", "internal_error"}) {
        load(R"("device":{"enrolled":true,"config_sync_last_success":9,"config_sync_failures":3,)"
             R"("config_sync_server":")" +
             std::string(server) + "\"}");
        syncConfig("enrollment-1");
        EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
        EXPECT_EQ(syncStatus("last_config_sync_success"), 9);
        EXPECT_EQ(syncStatus("fail_cnt_since_last_sync_success"), 4);
        EXPECT_EQ(syncStatus("server_connectivity"), server);
    }
    for (const char* server : {"ok", "unknown"}) {
        set(R"({"config_sync_server":")" + std::string(server) + "\"}");
        syncConfig("enrollment-1");
        EXPECT_EQ(syncStatus("last_config_sync_success"), startOfTime + 5);
        EXPECT_EQ(syncStatus("fail_cnt_since_last_sync_success"), 0);
    }
}

TEST_F(Upkeep, EnrollmentWhoseServerNeverAnsweredHasNeverSynchronised) {
    load(R"("device":{"enrolled":true,"config_sync_server":"unreachable"})");
    reportPosture();
    EXPECT_EQ(syncStatus("last_config_sync_success"), 0);
}

TEST_F(Upkeep, ConfigSyncTakesItsTime) {
    set(R"({"delays":{"config_sync":10}})");
    syncConfig("enrollment-1");
    pass(9);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
}

TEST_F(Upkeep, FaultComesAfterSoManyConfigSyncs) {
    set(R"({"faults":[{"when":"config_sync","skip":2,"times":2,"set":{"config_sync_server":"unreachable"}}]})");
    for (const int failures : {0, 0, 1, 2}) {
        syncConfig("enrollment-1");
        EXPECT_EQ(syncStatus("fail_cnt_since_last_sync_success"), failures);
    }
    EXPECT_TRUE(state().at("scenario").at("faults").as_array().empty());
}

TEST_F(Upkeep, PostureReportEndsInAStatus) {
    set(R"({"delays":{"posture_report":10}})");
    reportPosture();
    pass(9);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
}

TEST_F(Upkeep, PostureReportEndsAlertsAboutPostureWhereThatIsOk) {
    const std::string alerts =
        R"("dataplane_alerts":[{"category":"posture_error"},{"category":"policy_error"}]})";
    load(R"("device":{"enrolled":true,"posture":"unreachable",)" + alerts);
    reportPosture();
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    set(R"({"posture":"ok"})");
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    reportPosture();
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus, "dataplane 1 alerts, 0 requests"));
}

TEST_F(Upkeep, FaultComesWithAPostureReport) {
    set(R"({"faults":[{"when":"posture_report","set":{"posture":"bad_response"}}]})");
    reportPosture();
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus, enrolledStatus)) << "the fault's status and the report's";
}

TEST_F(Upkeep, ServiceThatIsDownSaysSo) {
    set(R"({"service_error":"no_service","dataplane_alerts":[{"category":"posture_error"}]})");
    sent();
    pass(5000);
    syncConfig("enrollment-1");
    reportPosture();
    EXPECT_THAT(sent(), ElementsAre("status error no_service", "status error no_service"));
    set(R"({"service_error":"none"})");
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus, "dataplane 1 alerts, 0 requests"))
        << "the alert has stayed";
    EXPECT_EQ(syncStatus("last_config_sync_success"), startOfTime);
}

TEST_F(Upkeep, CountersGrowFromStatusToStatus) {
    load(
        R"("device":{"enrolled":true,"flows":{"flow_cnt_udp":4294967290,"active_flow_cnt_tcp":1},)"
        R"("traffic":{"flow_cnt_udp":4,"flow_cnt_tcp":3,"active_flow_cnt_udp":1,"allowed_flow_cnt_udp":2,)"
        R"("allowed_flow_cnt_tcp":5,"blocked_flow_cnt_udp":6,"blocked_flow_cnt_tcp":7,)"
        R"("authenticated_flow_cnt_udp":8,"authenticated_flow_cnt_tcp":9}},"delays":{"status_interval":1000})");
    pass(999);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1001);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus, enrolledStatus));
    const struct {
        const char* name;
        std::uint32_t value;
    } expected[] = {
        {"flow_cnt_udp", 2},
        {"flow_cnt_tcp", 6},
        {"active_flow_cnt_udp", 2},
        {"active_flow_cnt_tcp", 1},
        {"allowed_flow_cnt_udp", 4},
        {"allowed_flow_cnt_tcp", 10},
        {"blocked_flow_cnt_udp", 12},
        {"blocked_flow_cnt_tcp", 14},
        {"authenticated_flow_cnt_udp", 16},
        {"authenticated_flow_cnt_tcp", 18},
    };
    for (const auto& counter : expected) {
        EXPECT_EQ(flows(counter.name), counter.value) << counter.name;
    }
}

TEST_F(Upkeep, CountersOfADeviceThatIsNotEnrolledRest) {
    load(R"("device":{"traffic":{"flow_cnt_tcp":3}},"delays":{"status_interval":10})");
    pass(10);
    EXPECT_THAT(sent(), ElementsAre("status active"));
    EXPECT_EQ(state().at("scenario").at("device").at("flows").at("flow_cnt_tcp"), 0);
}

TEST_F(Upkeep, IntervalMayBeChanged) {
    set(R"({"delays":{"status_interval":10}})");
    pass(35);
    EXPECT_EQ(sent().size(), 3u);
    set(R"({"delays":{"status_interval":100}})");
    pass(99);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_EQ(sent().size(), 1u);
    set(R"({"delays":{"status_interval":0}})");
    pass(10'000);
    EXPECT_THAT(sent(), ElementsAre());
}

TEST_F(Upkeep, StatusesGoOnWhileTheServiceIsDown) {
    set(R"({"delays":{"status_interval":10},"service_error":"other"})");
    sent();
    pass(20);
    EXPECT_THAT(sent(), ElementsAre("status error other", "status error other"));
}

TEST_F(Upkeep, CertificateExpires) {
    load(R"("device":{"enrolled":true,"certificate_lifetime_s":60})");
    pass(59'999);
    EXPECT_THAT(sent(), ElementsAre());
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    EXPECT_EQ(certificate("certificate_state"), "expired");
    EXPECT_EQ(certificate("certificate_expiration_time"), startOfTime + 60);
}

TEST_F(Upkeep, RenewedCertificateExpiresAtItsOwnTime) {
    load(R"("device":{"enrolled":true,"certificate_lifetime_s":60})");
    pass(30'000);
    reEnroll("enrollment-1");
    reply("enrollment-1", enrollmentCookie("enrollment-1"));
    sent();
    pass(59'999);
    EXPECT_THAT(sent(), ElementsAre()) << "the first one's end is past";
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
}

TEST_F(Upkeep, ScenarioMaySayWhenTheCertificateEnds) {
    load(R"("device":{"enrolled":true,"certificate_expires":1700000007})");
    pass(7000);
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    EXPECT_EQ(certificate("certificate_state"), "expired");
}

TEST_F(Upkeep, CertificateThatIsOkEndsInTheFuture) {
    load(R"("device":{"enrolled":true,"certificate_expires":5})");
    reportPosture();
    EXPECT_EQ(certificate("certificate_expiration_time"), startOfTime + 7'776'000);
    EXPECT_EQ(certificate("certificate_state"), "ok");
}

TEST_F(Upkeep, CertificateThatIsExpiredEndsInThePast) {
    pass(1000);
    set(R"({"certificate":"expired"})");
    EXPECT_THAT(sent(), ElementsAre(enrolledStatus));
    EXPECT_EQ(certificate("certificate_expiration_time"), startOfTime + 1);
    set(R"({"certificate":"ok"})");
    EXPECT_EQ(certificate("certificate_expiration_time"), startOfTime + 1 + 7'776'000);
}

TEST_F(Upkeep, CertificateThatWasTakenAwayDoesNotExpire) {
    for (const char* word : {"revoked", "rejected", "internal_error", "unknown"}) {
        load(R"("device":{"enrolled":true,"certificate_lifetime_s":60,"certificate":")" + std::string(word) +
             "\"}");
        pass(100'000);
        EXPECT_THAT(sent(), ElementsAre()) << word;
    }
}

TEST_F(Upkeep, NoCertificateExpiresAfterUnenrollment) {
    load(R"("device":{"enrolled":true,"certificate_lifetime_s":60})");
    unenroll("enrollment-1");
    sent();
    pass(100'000);
    EXPECT_THAT(sent(), ElementsAre());
}

TEST_F(Upkeep, LifetimeOfNothingEndsAtOnce) {
    load(R"("device":{"enrolled":true,"certificate_lifetime_s":0})");
    EXPECT_EQ(certificate("certificate_state"), "expired");
}

TEST_F(Upkeep, WhatComesByItselfIsNotWaitedFor) {
    wrensim_release_time();
    load(R"("device":{"enrolled":true},"delays":{"status_interval":3600000})");
    EXPECT_TRUE(wrensim_wait_idle());
    wrensim_hold_time(startOfTime);
}

} // namespace
