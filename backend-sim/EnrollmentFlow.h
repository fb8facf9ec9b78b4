/// An enrollment or a re-enrollment, from its request to its end.
#pragma once

#include "backend-sim/Documents.h"
#include "backend-sim/RequestReader.h"
#include "backend-sim/ServiceCore.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// The device has one enrollment at a time in the making. All its documents go to the connection that asked
/// for it, and at each stage it says only what a plugin takes there: "error" before "started", "complete"
/// after it. Everything belongs to a step of the core.
class EnrollmentFlow {
public:
    explicit EnrollmentFlow(ServiceCore& usedCore)
        : core(usedCore) {}

    // Requests. A second enrollment takes the place of one that the same connection or one that is over
    // began; to another connection it is refused.

    void enroll(const Target& connection, const Request& request);
    void reEnroll(const Target& connection, const Request& request);
    /// The cookie of the login; counts only while the login runs.
    void takeCookie(const Request& request);
    void cancel(const Request& request);

    /// Ends what runs, because the service is to be restarted.
    void abort();
    /// Forgets what was over with the life in which it began.
    void tidy();

    /// What runs: its id and its stage; null if nothing does.
    boost::json::value describe() const;

private:
    enum class Stage { Requested, Started, LoggingIn, Registering, Cancelling };

    struct Run {
        Target connection;
        EnrollmentSubject subject;
        std::optional<Choice> choice; ///< none for a re-enrollment
        Word flaw;                    ///< why it can't succeed, or empty
        std::weak_ptr<const void> life;
        Stage stage = Stage::Requested;
    };

    void begin(Run run);
    void start();
    void askForLogin();
    void awaitLogin();
    void failLogin();
    void registerDevice();
    void finishCancelling();

    bool isRunning() const { return run && !run->life.expired(); }
    bool isRunning(const Request& request) const;
    /// Whether the run is still there and not to fail now.
    bool passes(Word moment);
    void enter(Stage stage);
    /// A step that is dropped if another stage is entered before, or the run ends.
    void next(std::uint32_t delay, void (EnrollmentFlow::*step)());
    void tell(std::string_view status, std::string_view substatus);
    void complete(std::string_view substatus);
    void fail(std::string_view substatus);
    void end();

    ServiceCore& core;
    std::optional<Run> run;
    std::uint64_t begun = 0;
    DeliveryThread::Owner turn; ///< of the stage that runs
};

} // namespace sim
