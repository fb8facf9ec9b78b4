/// The service of one device: what the library does when nobody tells it what to do.
#pragma once

#include "backend-sim/Connection.h"
#include "backend-sim/Controls.h"
#include "backend-sim/DeliveryThread.h"
#include "backend-sim/DeviceState.h"
#include "backend-sim/RequestReader.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Starts as a device that is not enrolled. An enrollment is started, asks for authentication, takes any
/// cookie that is not empty, and completes; it can be cancelled in between. Lives on the delivery thread:
/// everything but the constructor must be called there, and documents go out from there.
class SimService {
public:
    /// @param thread where later steps wait for their time
    /// @param controls while they say that the stand-in is quiet, nothing goes out
    SimService(DeliveryThread& thread, const Controls& controls);

    /// All delays in percent of their usual length.
    void setPace(std::uint32_t percent) noexcept { pace = percent; }

    /// A connection has taken its receiver: it hears of "init" at once and of the real state soon after.
    void onStart(const std::shared_ptr<Connection>& connection);

    /// A valid request of a running connection.
    void onRequest(const std::shared_ptr<Connection>& connection, Operation operation,
                   const Request& request);

private:
    using Target = std::shared_ptr<Connection>;
    using Step = std::function<void()>;

    struct RunningEnrollment {
        EnrollmentProgress progress;
        Target connection;
        std::uint64_t number;
    };

    void enroll(const Target& connection, const Request& request);
    void reEnroll(const Target& connection, const Request& request);
    void beginEnrollment(const Target& connection, std::string id, std::string context);
    void takeCookie(const Request& request);
    void cancelEnrollment(const Request& request);
    void becomeEnrolled();
    void completeEnrollment(std::string_view substatus);
    bool isRunningEnrollment(const Request& request) const;

    void unenroll(const Target& connection, const Request& request);
    void syncConfig(const Request& request);
    bool isOwnEnrollment(const Request& request) const;

    void later(std::chrono::milliseconds delay, Step step);
    /// Drops the step if the enrollment that runs now has ended by then.
    void laterInEnrollment(std::chrono::milliseconds delay, Step step);

    void send(const Target& connection, WrenSimDocument document, const std::string& json) const;
    void sendStatusToAll();

    DeliveryThread& deliveryThread;
    const Controls& told;
    std::uint32_t pace = 100;
    std::vector<Target> listeners;
    DeviceState device;
    std::optional<RunningEnrollment> enrollment;
    std::uint64_t enrollmentsBegun = 0;
};

} // namespace sim
