#include "backend-sim/ServiceCore.h"

#include "backend-sim/Documents.h"
#include "backend-sim/ScenarioReader.h"

#include <algorithm>
#include <utility>

namespace sim {
namespace {

std::string emptyDataplane() { return dataplaneDocument({}, {}); }

bool isOver(const Target& connection) { return !connection->isRunning(); }

} // namespace

ServiceCore::ServiceCore(DeliveryThread& usedThread, const Controls& controls, LoginCookies& usedCookies)
    : thread(usedThread)
    , told(controls)
    , cookies(usedCookies)
    , lastDataplane(emptyDataplane()) {}

void ServiceCore::run(const Step& step) {
    std::vector<Letter> letters;
    {
        const std::lock_guard lock(mutex);
        step();
        afterStep();
        letters.swap(outbox);
    }
    deliver(letters);
}

void ServiceCore::later(std::uint32_t milliseconds, const DeliveryThread::Owner& owner, Step step) {
    thread.postFor(
        owner, [this, step = std::move(step)] { run(step); }, paced(milliseconds));
}

void ServiceCore::laterByItself(std::chrono::milliseconds delay, const DeliveryThread::Owner& owner,
                                Step step) {
    thread.postTimer(
        owner, [this, step = std::move(step)] { run(step); }, delay);
}

std::chrono::milliseconds ServiceCore::paced(std::uint32_t milliseconds) const {
    return std::chrono::milliseconds(static_cast<std::uint64_t>(milliseconds) * pace / 100);
}

void ServiceCore::read(const std::function<void(const Scenario&)>& reader) const {
    const std::lock_guard lock(mutex);
    reader(present);
}

Word ServiceCore::reach(Word moment) {
    const Mishap mishap = takeMishap(present.faults, moment);
    for (const boost::json::object& knobs : mishap.changes) {
        change(knobs);
    }
    return mishap.fail;
}

void ServiceCore::change(const boost::json::object& knobs) {
    const bool wasDown = device().isDown();
    const std::string before = statusDocument(device());
    setKnobs(knobs, present);
    device().settle(now());
    if (device().isDown() && !wasDown) {
        ownLife = DeliveryThread::newOwner();
    }
    if (statusDocument(device()) != before) {
        publishStatus();
    }
    if (wasDown && !device().isDown() && lastDataplane != emptyDataplane()) {
        repeatDataplane(); // it may have been due while there was nobody to send it
    } else {
        publishDataplane();
    }
}

void ServiceCore::restart(Scenario scenario) {
    const bool hadDataplane = lastDataplane != emptyDataplane();
    ownLife = DeliveryThread::newOwner();
    present = std::move(scenario);
    device().settle(now());
    cookies.closeAll();
    updateDataplane();
    std::erase_if(listeners, isOver);
    for (const Target& listener : listeners) {
        welcome(listener, hadDataplane);
    }
}

void ServiceCore::addListener(const Target& connection) {
    std::erase_if(listeners, isOver);
    listeners.push_back(connection);
    welcome(connection, false);
}

std::size_t ServiceCore::listenerCount() const {
    return static_cast<std::size_t>(std::count_if(listeners.begin(), listeners.end(),
                                                  [](const Target& listener) { return !isOver(listener); }));
}

void ServiceCore::welcome(const Target& connection, bool hasOldDataplane) {
    send(connection, wrensim_status_notification, initStatusDocument());
    later(present.delays.firstStatus, [this, connection, hasOldDataplane] {
        send(connection, wrensim_status_notification, statusDocument(device()));
        if (hasOldDataplane || lastDataplane != emptyDataplane()) {
            send(connection, wrensim_dataplane_notification, lastDataplane);
        }
    });
}

void ServiceCore::send(const Target& connection, WrenSimDocument document, std::string json) {
    outbox.push_back({connection, document, std::move(json)});
}

void ServiceCore::publishStatus() { sendAll(wrensim_status_notification, statusDocument(device())); }

void ServiceCore::publishDataplane() {
    const std::string before = lastDataplane;
    if (updateDataplane() != before) {
        sendAll(wrensim_dataplane_notification, lastDataplane);
    }
}

void ServiceCore::repeatDataplane() { sendAll(wrensim_dataplane_notification, updateDataplane()); }

std::string ServiceCore::updateDataplane() {
    std::vector<std::string> contexts;
    if (device().isEnrolled) {
        for (const DataplaneAuthRequest& request : device().dataplaneAuthRequests) {
            contexts.push_back(request.contextId);
        }
    }
    cookies.keep(wrensim_dataplane_login, contexts, present.dataplaneLogin.cookie);
    lastDataplane = dataplaneDocument(device(), present.dataplaneLogin);
    return lastDataplane;
}

void ServiceCore::sendAll(WrenSimDocument document, const std::string& json) {
    for (const Target& listener : listeners) {
        send(listener, document, json);
    }
}

void ServiceCore::deliver(const std::vector<Letter>& letters) const {
    for (const Letter& letter : letters) {
        if (letter.connection->isRunning() && !told.isQuiet()) {
            letter.connection->deliver(letter.document, letter.json, told.documentWatch());
        }
    }
}

} // namespace sim
