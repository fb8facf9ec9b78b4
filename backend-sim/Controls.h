/// What the stand-in was told to do, and who watches.
#pragma once

#include "backend-sim/DocumentWatch.h"
#include "backend-sim/Operation.h"
#include "backend-sim/WrenSim.h"
#include "wren/QuillApi.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>

namespace sim {

/// Any thread.
class Controls {
public:
    void setQuiet(bool value) noexcept { quiet = value; }
    bool isQuiet() const noexcept { return quiet; }

    void setNullApi(bool value) noexcept { nullApi = value; }
    bool isNullApi() const noexcept { return nullApi; }

    void setResult(Operation operation, QuillApiResult result, std::uint32_t times);
    /// The result that the next call of the operation was told to have, used up by this.
    std::optional<QuillApiResult> takeResult(Operation operation);
    /// Forgets all results that wait.
    void clearResults();

    void setObserver(WrenSimObserver observer, void* context);
    /// Tells the observer of a call, holding no lock.
    void tellObserver(std::uint64_t api, Operation operation, const char* json) const;

    void setDocumentWatch(const DocumentWatch& watch);
    DocumentWatch documentWatch() const;

private:
    struct ToldResult {
        QuillApiResult result = QuillApiResult::Success;
        std::uint32_t times = 0;
    };
    struct Observer {
        WrenSimObserver call = nullptr;
        void* context = nullptr;
    };

    std::atomic<bool> quiet = false;
    std::atomic<bool> nullApi = false;
    mutable std::mutex mutex;
    std::array<ToldResult, operationCount> results;
    Observer observer;
    DocumentWatch watch;
};

} // namespace sim
