/// What the service's flows work with: the device, time, what goes wrong, and the way out.
#pragma once

#include "backend-sim/Connection.h"
#include "backend-sim/Controls.h"
#include "backend-sim/DeliveryThread.h"
#include "backend-sim/LoginCookies.h"
#include "backend-sim/Scenario.h"

#include <boost/json/object.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace sim {

using Target = std::shared_ptr<Connection>;

/// The service's work is done in steps on the delivery thread. A step changes the state and says what is to
/// be sent; that goes out when the step is done, so that whoever is called finds the service at rest. All of
/// this belongs to the step that runs, save where told otherwise.
class ServiceCore {
public:
    using Step = std::function<void()>;

    /// @param controls while they say that the stand-in is quiet, nothing goes out
    ServiceCore(DeliveryThread& thread, const Controls& controls, LoginCookies& cookies);

    /// Runs a step. On the delivery thread, not inside a step.
    void run(const Step& step);
    /// Is run at the end of every step. To be set before the first one.
    void setAfterStep(Step step) { afterStep = std::move(step); }

    /// A step at its time, `milliseconds` from now at the service's pace. It is dropped where the life ends
    /// before.
    void later(std::uint32_t milliseconds, Step step) { later(milliseconds, ownLife, std::move(step)); }
    /// The same for a step that is dropped where its owner goes before.
    void later(std::uint32_t milliseconds, const DeliveryThread::Owner& owner, Step step);
    /// A step that comes by itself: nobody waits for it.
    void laterByItself(std::chrono::milliseconds delay, const DeliveryThread::Owner& owner, Step step);
    /// That many milliseconds at the service's pace.
    std::chrono::milliseconds paced(std::uint32_t milliseconds) const;
    void setPace(std::uint32_t percent) { pace = percent; }
    std::uint32_t currentPace() const { return pace; }

    /// The wall clock.
    std::int64_t now() const { return thread.unixSeconds(); }

    Device& device() { return present.device; }
    const Scenario& scenario() const { return present; }
    LoginCookies& logins() { return cookies; }

    /// Calls a reader with the state, between two steps. Any thread, not inside a step.
    void read(const std::function<void(const Scenario&)>& reader) const;

    /// Whatever runs belongs to a life. A life ends with a restart and when the service goes down: it has
    /// expired then.
    std::weak_ptr<const void> life() const { return ownLife; }

    /// A moment has come: what the faults change is changed.
    /// @return how the operation is to fail, or an empty word; meaningless where the life has ended by it
    Word reach(Word moment);
    /// Sets knobs and tells of what they changed. Going down ends the life.
    void change(const boost::json::object& knobs);
    /// Begins a new life, in which every listener hears of the start of the service.
    void restart(Scenario scenario);

    /// A connection to hear of the service: of its start first, and soon after of the real state.
    void addListener(const Target& connection);
    std::size_t listenerCount() const;

    void send(const Target& connection, WrenSimDocument document, std::string json);
    /// Sends the status to all, changed or not.
    void publishStatus();
    /// Sends the dataplane document to all, if it has changed. Logins open and close with its requests.
    void publishDataplane();
    /// Sends it, changed or not.
    void repeatDataplane();

private:
    struct Letter {
        Target connection;
        WrenSimDocument document;
        std::string json;
    };

    void welcome(const Target& connection, bool hasOldDataplane);
    void sendAll(WrenSimDocument document, const std::string& json);
    void deliver(const std::vector<Letter>& letters) const;
    std::string updateDataplane();

    DeliveryThread& thread;
    const Controls& told;
    LoginCookies& cookies;
    Step afterStep = [] {};

    mutable std::mutex mutex; ///< held during a step
    Scenario present;
    std::uint32_t pace = 100;
    DeliveryThread::Owner ownLife = DeliveryThread::newOwner();
    std::vector<Target> listeners;
    std::string lastDataplane; ///< as it was sent last, or would have been
    std::vector<Letter> outbox;
};

} // namespace sim
