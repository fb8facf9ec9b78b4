/// The library as a whole: its factory, its connections, its thread and its service.
#pragma once

#include "backend-sim/Connection.h"
#include "backend-sim/Controls.h"
#include "backend-sim/DeliveryThread.h"
#include "backend-sim/LoginCookies.h"
#include "backend-sim/LoginPage.h"
#include "backend-sim/RequestReader.h"
#include "backend-sim/SimService.h"
#include "wren/QuillApi.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace sim {

/// What stands behind the library's exports and its API objects. One in the process, from the first use to
/// the unloading of the library, or to the process's end where that is the same. Any thread.
class Backend {
public:
    static Backend& instance();

    Controls& controls() noexcept { return told; }

    QuillApiResult getFactory(std::weak_ptr<IQuillApiFactory>& factory);
    QuillApiResult createApi(std::shared_ptr<IQuillApi>& api);
    QuillApiResult start(const std::shared_ptr<Connection>& connection,
                         const std::weak_ptr<IQuillApiCallbacks>& callbacks);
    QuillApiResult request(const std::shared_ptr<Connection>& connection, Operation operation,
                           const char* json);
    QuillApiResult stop(const std::shared_ptr<Connection>& connection);
    /// The connection's API object has gone, stopped or not: it counts as stopped.
    void release(Connection& connection);

    void setFactoryExpired(bool expired);
    void setPace(std::uint32_t percent);
    /// @throws ScenarioError
    void loadScenario(const char* json);
    /// @throws ScenarioError
    void setKnobs(const char* json);
    std::string serviceState() const { return service.state(); }
    const LoginCookies& logins() const noexcept { return cookies; }
    std::optional<LoginPage> loginPage(const LoginPageRequest& request) const;

    WrenSimDelivery deliver(std::uint64_t api, WrenSimDocument document, const char* json, bool wait);
    bool hasReceiver(std::uint64_t api) const;
    void forgetReceivers();

    /// @return false on the delivery thread, which would wait for itself
    bool waitUntilIdle();
    DeliveryThread& time() noexcept { return thread; }

private:
    Backend();
    ~Backend() = default;
    QuillApiResult acceptRequest(const std::shared_ptr<Connection>& connection, Operation operation,
                                 const char* json);

    Controls told;
    Connections connections;
    std::mutex factoryMutex;
    std::shared_ptr<IQuillApiFactory> factory;
    LoginCookies cookies;
    SimService service;    ///< touched on the delivery thread alone, but for its `state`
    DeliveryThread thread; ///< last: it ends before anything that its tasks use
};

} // namespace sim
