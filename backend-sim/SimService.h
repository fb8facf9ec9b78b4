/// The service of one device: what the library does when nobody tells it what to do.
#pragma once

#include "backend-sim/DataplaneFlow.h"
#include "backend-sim/EnrollmentFlow.h"
#include "backend-sim/RequestReader.h"
#include "backend-sim/ServiceCore.h"
#include "backend-sim/UnenrollmentFlow.h"
#include "backend-sim/Upkeep.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <string>

namespace sim {

/// Lives on the delivery thread: everything but the constructor and `state` must be called there. Starts with
/// the usual scenario.
class SimService {
public:
    /// All must outlive the service. @param thread where later steps wait for their time
    SimService(DeliveryThread& thread, const Controls& controls, LoginCookies& cookies);
    SimService(const SimService&) = delete;
    SimService& operator=(const SimService&) = delete;

    /// All delays in percent of their length.
    void setPace(std::uint32_t percent);

    /// A connection has taken its receiver: it hears of "init" at once and of the real state soon after.
    void onStart(const Target& connection);

    /// A valid request of a running connection.
    void onRequest(const Target& connection, Operation operation, const Request& request);

    /// The service is started anew, in that state. What runs fails.
    void load(Scenario scenario);
    /// @param knobs valid
    void set(const boost::json::object& knobs);

    /// The present state as one JSON object. Any thread, but not from inside the service.
    std::string state() const;
    /// Where users log in at present. The same threads.
    Logins logins() const;

private:
    void act(const Target& connection, Operation operation, const Request& request);

    ServiceCore core;
    EnrollmentFlow enrollment;
    UnenrollmentFlow unenrollment;
    DataplaneFlow dataplane;
    Upkeep upkeep;
};

} // namespace sim
