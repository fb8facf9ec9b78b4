/// An unenrollment, from its request to its end.
#pragma once

#include "backend-sim/Documents.h"
#include "backend-sim/RequestReader.h"
#include "backend-sim/ServiceCore.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace sim {

/// The device has one at a time. It is always "started" and then "complete": a plugin that waits for it takes
/// nothing else. Everything belongs to a step of the core.
class UnenrollmentFlow {
public:
    explicit UnenrollmentFlow(ServiceCore& usedCore)
        : core(usedCore) {}

    /// A second unenrollment takes the place of one that the same connection or one that is over began; to
    /// another connection it fails.
    void unenroll(const Target& connection, const Request& request);

    /// Ends what runs, because the service is to be restarted.
    void abort();
    /// Forgets what was over with the life in which it began.
    void tidy();

    /// What runs: its id and its stage; null if nothing does.
    boost::json::value describe() const;

private:
    struct Run {
        Target connection;
        EnrollmentSubject subject;
        std::weak_ptr<const void> life;
        bool isStarted = false;
    };

    void start();
    void finish();

    bool isRunning() const { return run && !run->life.expired(); }
    void next(std::uint32_t delay, void (UnenrollmentFlow::*step)());
    void tell(const Run& told, std::string_view status, std::string_view substatus);
    void complete(std::string_view substatus);
    void end();

    ServiceCore& core;
    std::optional<Run> run;
    DeliveryThread::Owner turn; ///< of what runs
};

} // namespace sim
