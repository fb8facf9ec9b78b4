/// What the service knows of its device, and what becomes of it in its life. Times are seconds since 1970.
#pragma once

#include "backend-sim/Words.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim {

/// A time that may yet have to come; `Device::settle` fills it in.
using Time = std::optional<std::int64_t>;

/// One way in which the device may enroll.
struct Choice {
    std::string id;
    std::string type = "user";
    std::string label = "Example Corp";
    std::string state = "available";
    bool enrollAllowed = true;
};

/// The enrollment that exists, or that is there to begin with.
struct Enrollment {
    std::string id = "enrollment-1";
    std::string type = "user";
    std::string label = "Example Corp";
    std::string state = "enrolled";
    std::string substate;
    Time time;
    bool unenrollAllowed = true;
    bool reenrollAllowed = true;
};

struct Certificate {
    Word state = "ok";
    Word renewal = "ok";
    Time expires;
    std::uint32_t lifetime = 90 * 24 * 60 * 60; ///< seconds
    Time lastRenewalAttempt;
    std::uint32_t failedRenewals = 0;
};

/// For whom the certificate was made out.
struct Identity {
    std::string orgId = "org-1";
    std::string userId = "user-1";
    std::string plvId = "plv-1";
    std::string deviceId = "device-1";
    std::string userName = "Robin Example";
};

struct ConfigSync {
    Word server = "ok";
    std::uint32_t intervalMinutes = 60;
    Time lastSuccess; ///< 0: never
    std::uint32_t failures = 0;
};

inline constexpr std::array<const char*, 10> flowCounterNames{
    "flow_cnt_udp",
    "flow_cnt_tcp",
    "active_flow_cnt_udp",
    "active_flow_cnt_tcp",
    "allowed_flow_cnt_udp",
    "allowed_flow_cnt_tcp",
    "blocked_flow_cnt_udp",
    "blocked_flow_cnt_tcp",
    "authenticated_flow_cnt_udp",
    "authenticated_flow_cnt_tcp",
};
/// In the order of their names.
using FlowCounters = std::array<std::uint32_t, flowCounterNames.size()>;

struct Proxy {
    std::string label = "Example proxy";
    std::string status = "active";
};

struct Fingerprint {
    std::string label = "Office";
    Word status = "Matched";
};

/// Where a flow was bound for.
struct Destination {
    std::string host = "app.example.test";
    std::uint32_t port = 443;
    Word protocol = "tcp";
};

struct DataplaneAlert {
    Word category = "policy_error";
    std::uint32_t code = 0;
    Time time;
    std::string title;
    std::string shortMessage;
    std::string longMessage;
    std::string tileMessage;
    std::string toastMessage;
    std::string url;
    std::string urlLabel;
    std::vector<Destination> destinations;
};

/// Asks the user to log in before a destination opens.
struct DataplaneAuthRequest {
    std::string contextId;
    Time time;
    Destination destination;
};

struct Device {
    Word serviceError = "none";
    Word serviceStatus = "ok";
    Word interceptor = "ok";
    Word posture = "ok";
    Word keyStore = "ok";
    std::vector<Choice> choices{{.id = "choice-1"}};

    // The rest tells of the enrollment. While there is none, it is what the next one will find.
    bool isEnrolled = false;
    Enrollment enrollment;
    Certificate certificate;
    Identity identity;
    ConfigSync configSync;
    Word dataplaneServer = "ok";
    FlowCounters flows{};
    FlowCounters traffic{}; ///< by how much the counters grow from one status at an interval to the next
    std::vector<Proxy> proxies = std::vector<Proxy>(1);
    std::vector<Fingerprint> fingerprints = std::vector<Fingerprint>(1);
    std::vector<DataplaneAlert> dataplaneAlerts;
    std::vector<DataplaneAuthRequest> dataplaneAuthRequests;

    /// Whether the service can do nothing but say so.
    bool isDown() const { return serviceError != words::serviceError[0]; }

    /// The choice of that id if the device may enroll with it now, else null.
    const Choice* openChoice(const std::string& id) const;
    bool hasEnrollment(const std::string& id) const { return isEnrolled && enrollment.id == id; }

    /// Fills in the times that are still to come, and brings the certificate's end in line with its state:
    /// one that is "ok" ends in the future, one that is "expired" in the past.
    void settle(std::int64_t now);

    /// A new enrollment with a certificate of its own.
    void enroll(std::string id, const Choice& choice, std::int64_t now);
    /// The same enrollment, made anew.
    void renew(std::int64_t now);
    /// Nothing of the enrollment stays.
    void unenroll();

    /// One attempt: it succeeds or fails with the server.
    void syncConfig(std::int64_t now);
    /// @return whether a certificate that was "ok" has come to its end
    bool expireCertificate(std::int64_t now);
    /// The counters grow by the traffic, as 32-bit counters do.
    void countTraffic();
    /// Where posture is "ok", alerts about it are over.
    void reportPosture();
    /// @return whether there was such a request
    bool removeAuthRequest(const std::string& contextId);

private:
    void issueCertificate(std::int64_t now);
    void replaceCertificate();
};

} // namespace sim
