/// What the library knows of one API object, kept for as long as a document may still be sent to it.
#pragma once

#include "backend-sim/DocumentWatch.h"
#include "backend-sim/WrenSim.h"
#include "wren/QuillApi.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace sim {

/// The life of a connection, from its making past its stop, and its receiver. Any thread.
class Connection {
public:
    explicit Connection(std::uint64_t number)
        : ownNumber(number) {}

    std::uint64_t number() const noexcept { return ownNumber; }

    /// Takes the receiver, once.
    /// @return BadParameter for one that is gone, InvalidState for a connection that was started before
    QuillApiResult start(const std::weak_ptr<IQuillApiCallbacks>& callbacks);
    /// @return InvalidState for a connection that is not running
    QuillApiResult stop();
    bool isRunning() const;

    /// Whether there is somebody to call; true past `stop` too, until the receiver goes or is forgotten.
    bool hasReceiver() const;

    /// Lets go of the receiver, whatever the phase. A call that is under way ends as it would have.
    void forgetReceiver();

    /// Calls the receiver, holding it for the time of the call and no lock. Who watches is told before and
    /// after it.
    /// @return false if there is none or the document is turned away
    bool deliver(WrenSimDocument document, const std::string& json, const DocumentWatch& watch) const;

private:
    enum class Phase { Made, Running, Stopped };

    std::shared_ptr<IQuillApiCallbacks> lockReceiver() const;

    const std::uint64_t ownNumber;
    mutable std::mutex mutex;
    Phase phase = Phase::Made;
    std::weak_ptr<IQuillApiCallbacks> receiver;
};

/// All connections by number. Any thread.
class Connections {
public:
    /// A new one with the next number, from 1. Forgets those that nobody else holds and that have no
    /// receiver.
    std::shared_ptr<Connection> make();

    /// The connection of that number, or the latest for `WRENSIM_LATEST_API`; null if there is none.
    std::shared_ptr<Connection> find(std::uint64_t number) const;

    /// Lets go of the receivers of all.
    void forgetReceivers();

private:
    mutable std::mutex mutex;
    std::uint64_t latest = 0;
    std::map<std::uint64_t, std::shared_ptr<Connection>> byNumber;
};

} // namespace sim
