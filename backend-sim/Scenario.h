/// A service as it is to begin with, and as it is at present.
#pragma once

#include "backend-sim/Device.h"
#include "backend-sim/Fault.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sim {

/// How long each step takes, in milliseconds.
struct Delays {
    std::uint32_t firstStatus = 400;           ///< from "init" to the real status
    std::uint32_t statusInterval = 0;          ///< between statuses that come by themselves; 0: none come
    std::uint32_t enrollmentStarted = 0;       ///< from the request to "started"
    std::uint32_t authenticationRequest = 300; ///< from "started" to the authentication request
    std::uint32_t loginFailure = 5000;         ///< from there to the end of a login that is to fail
    std::uint32_t registration = 1500;         ///< from the right cookie to the end
    std::uint32_t cancellation = 300;          ///< from the cancelling to the end
    std::uint32_t unenrollmentStarted = 0;     ///< from the request to "started"
    std::uint32_t unenrollment = 800;          ///< from "started" to the end
    std::uint32_t configSync = 300;
    std::uint32_t postureReport = 300;
    std::uint32_t dataplaneReply = 300;
};

/// Where users log in.
struct Login {
    std::string startUrl;
    std::string endUrl;
    std::string cookieName;
    std::string cookie;            ///< the value that every login gets; empty: each gets one of its own
    std::string password = "wren"; ///< that the login page takes, from any user
};

/// The same for both kinds of login.
struct Logins {
    Login enrollment;
    Login dataplane;
};

struct Scenario {
    Device device;
    Delays delays;
    Login enrollmentLogin{
        .startUrl = "https://login.example.test/enroll",
        .endUrl = "https://login.example.test/enroll/done",
        .cookieName = "session",
        .cookie = {},
    };
    Login dataplaneLogin{
        .startUrl = "https://login.example.test/access",
        .endUrl = "https://login.example.test/access/done",
        .cookieName = "authorization",
        .cookie = {},
    };
    std::vector<Fault> faults; ///< those that are still to come
};

} // namespace sim
