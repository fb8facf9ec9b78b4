#include "backend-sim/Backend.h"

#include "backend-sim/ScenarioReader.h"
#include "backend-sim/SimApi.h"

#include <future>
#include <new>
#include <string>
#include <system_error>
#include <utility>

namespace sim {
namespace {

/// The contract's operations answer with a result, also where memory or threads run out.
template <class Work>
QuillApiResult guarded(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return QuillApiResult::AllocFailed;
    } catch (const std::system_error&) {
        return QuillApiResult::ResourceUnavailable;
    }
}

} // namespace

Backend::Backend()
    : factory(makeFactory(*this))
    , service(thread, told, cookies) {}

QuillApiResult Backend::getFactory(std::weak_ptr<IQuillApiFactory>& handedOut) {
    told.tellObserver(0, Operation::GetQuillApiFactory, nullptr);
    const QuillApiResult result =
        told.takeResult(Operation::GetQuillApiFactory).value_or(QuillApiResult::Success);
    if (result == QuillApiResult::Success) {
        const std::lock_guard lock(factoryMutex);
        handedOut = factory;
    }
    return result;
}

QuillApiResult Backend::createApi(std::shared_ptr<IQuillApi>& api) {
    told.tellObserver(0, Operation::CreateApi, nullptr);
    const QuillApiResult result = told.takeResult(Operation::CreateApi).value_or(QuillApiResult::Success);
    if (result != QuillApiResult::Success) {
        return result;
    }
    return guarded([&] {
        api = told.isNullApi() ? nullptr : makeApi(*this, connections.make());
        return QuillApiResult::Success;
    });
}

QuillApiResult Backend::start(const std::shared_ptr<Connection>& connection,
                              const std::weak_ptr<IQuillApiCallbacks>& callbacks) {
    told.tellObserver(connection->number(), Operation::Start, nullptr);
    const QuillApiResult result = told.takeResult(Operation::Start).value_or(QuillApiResult::Success);
    if (result != QuillApiResult::Success) {
        return result;
    }
    return guarded([&] {
        const QuillApiResult started = connection->start(callbacks);
        if (started == QuillApiResult::Success && !told.isQuiet()) {
            thread.post([this, connection] { service.onStart(connection); });
        }
        return started;
    });
}

QuillApiResult Backend::request(const std::shared_ptr<Connection>& connection, Operation operation,
                                const char* json) {
    told.tellObserver(connection->number(), operation, json);
    if (const auto result = told.takeResult(operation); result && *result != QuillApiResult::Success) {
        return *result;
    }
    return json == nullptr ? QuillApiResult::NullPointer
                           : guarded([&] { return acceptRequest(connection, operation, json); });
}

QuillApiResult Backend::acceptRequest(const std::shared_ptr<Connection>& connection, Operation operation,
                                      const char* json) {
    std::optional<Request> request = readRequest(operation, json);
    if (!request) {
        return QuillApiResult::BadParameter;
    }
    if (!connection->isRunning()) {
        return QuillApiResult::InvalidState;
    }
    if (!told.isQuiet()) {
        thread.post([this, connection, operation, valid = std::move(*request)] {
            service.onRequest(connection, operation, valid);
        });
    }
    return QuillApiResult::Success;
}

QuillApiResult Backend::stop(const std::shared_ptr<Connection>& connection) {
    told.tellObserver(connection->number(), Operation::Stop, nullptr);
    const QuillApiResult result = told.takeResult(Operation::Stop).value_or(QuillApiResult::Success);
    return result == QuillApiResult::Success ? connection->stop() : result;
}

void Backend::release(Connection& connection) {
    connection.stop();
    // A receiver that is kept would reach into the plugin's module even after that has been unloaded. Whoever
    // wants late documents has quiet mode and sees to it himself.
    if (!told.isQuiet()) {
        connection.forgetReceiver();
    }
}

void Backend::setFactoryExpired(bool expired) {
    std::shared_ptr<IQuillApiFactory> gone;
    const std::lock_guard lock(factoryMutex);
    if (expired) {
        gone = std::exchange(factory, nullptr);
    } else if (!factory) {
        factory = makeFactory(*this);
    }
}

void Backend::setPace(std::uint32_t percent) {
    thread.post([this, percent] { service.setPace(percent); });
}

void Backend::loadScenario(const char* json) {
    thread.post([this, scenario = readScenario(json)] { service.load(scenario); });
}

void Backend::setKnobs(const char* json) {
    thread.post([this, knobs = readKnobs(json)] { service.set(knobs); });
}

std::optional<LoginPage> Backend::loginPage(const LoginPageRequest& request) const {
    return answerLogin(request, service.logins(), cookies);
}

WrenSimDelivery Backend::deliver(std::uint64_t api, WrenSimDocument document, const char* json, bool wait) {
    const bool isDocument =
        document >= wrensim_status_notification && document <= wrensim_dataplane_notification;
    if (json == nullptr || !isDocument || (wait && thread.isCurrent())) {
        return wrensim_refused;
    }
    const std::shared_ptr<Connection> connection = connections.find(api);
    if (!connection || !connection->hasReceiver()) {
        return wrensim_no_receiver;
    }
    const auto wasDelivered = std::make_shared<std::promise<bool>>();
    std::future<bool> outcome = wasDelivered->get_future();
    thread.post([this, connection, document, text = std::string(json), wasDelivered] {
        wasDelivered->set_value(connection->deliver(document, text, told.documentWatch()));
    });
    return !wait || outcome.get() ? wrensim_delivered : wrensim_no_receiver;
}

bool Backend::hasReceiver(std::uint64_t api) const {
    const std::shared_ptr<Connection> connection = connections.find(api);
    return connection && connection->hasReceiver();
}

void Backend::forgetReceivers() {
    connections.forgetReceivers();
    if (!thread.isCurrent()) {
        thread.waitForRunningTask();
    }
}

bool Backend::waitUntilIdle() {
    if (thread.isCurrent()) {
        return false;
    }
    thread.waitUntilIdle();
    return true;
}

} // namespace sim
