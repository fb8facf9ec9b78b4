/// A backend library that lives in the test program: it has no thread, answers as it is told, and delivers on
/// the thread that asks it to. It stands in the place of the real one, behind the same headers.
#pragma once

#include "backend-sim/Operation.h"
#include "wren/QuillApi.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

namespace test {

/// What can be asked of the backend.
using BackendCall = sim::Operation;

/// The documents that it delivers, in the order of the callbacks.
enum class Document { Status, EnrollmentStatus, EnrollmentAuthRequest, UnenrollmentStatus, Dataplane };
inline constexpr std::size_t documentCount = 5;

/// Calls one of the five callbacks.
void deliver(IQuillApiCallbacks& receiver, Document document, const char* json);

/// The one backend of the process. Its settings change only while no plugin runs on another thread.
class MemoryBackend {
public:
    static MemoryBackend& instance();

    /// As it is at first: all succeeds, no hook, no receiver, counts at 0.
    void reset();

    /// What a call answers from now on.
    void answer(BackendCall call, QuillApiResult result) { results[index(call)] = result; }
    /// Whether `CreateApi` reports success and gives no connection.
    void giveNoApi(bool isSo) { givesNoApi = isSo; }
    /// Lets the factory that plugins hold go, or brings up a new one.
    void expireFactory();
    void renewFactory();

    /// Called within each call, before it is answered.
    std::function<void(BackendCall, const char* json)> hook;

    /// How often a call came.
    std::size_t count(BackendCall call) const { return counts[index(call)]; }
    std::size_t connectionCount() const { return connections; }

    /// The receiver of the latest connection that was started; null if it has gone.
    std::shared_ptr<IQuillApiCallbacks> receiver() const { return latest.lock(); }
    /// Delivers to that one; nothing happens if it has gone.
    void deliver(Document document, std::string_view json) const;

    // For the connections and the exported function.
    QuillApiResult enter(BackendCall call, const char* json) noexcept(false);
    QuillApiResult getFactory(std::weak_ptr<IQuillApiFactory>& factory);
    QuillApiResult createApi(std::shared_ptr<IQuillApi>& api);
    void setReceiver(const std::weak_ptr<IQuillApiCallbacks>& callbacks) { latest = callbacks; }
    void countConnection(int step) { connections += static_cast<std::size_t>(step); }

private:
    MemoryBackend();
    static std::size_t index(BackendCall call) { return static_cast<std::size_t>(call); }

    std::array<QuillApiResult, sim::operationCount> results{};
    std::array<std::atomic<std::size_t>, sim::operationCount> counts{};
    std::atomic<std::size_t> connections = 0; ///< alive
    bool givesNoApi = false;
    std::shared_ptr<IQuillApiFactory> currentFactory;
    std::weak_ptr<IQuillApiCallbacks> latest;
};

} // namespace test
