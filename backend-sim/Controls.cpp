#include "backend-sim/Controls.h"

namespace sim {

void Controls::setResult(Operation operation, QuillApiResult result, std::uint32_t times) {
    const std::lock_guard lock(mutex);
    results[static_cast<std::size_t>(operation)] = {result, times};
}

std::optional<QuillApiResult> Controls::takeResult(Operation operation) {
    const std::lock_guard lock(mutex);
    ToldResult& told = results[static_cast<std::size_t>(operation)];
    if (told.times == 0) {
        return std::nullopt;
    }
    --told.times;
    return told.result;
}

void Controls::clearResults() {
    const std::lock_guard lock(mutex);
    results = {};
}

void Controls::setObserver(WrenSimObserver call, void* context) {
    const std::lock_guard lock(mutex);
    observer = {call, context};
}

void Controls::tellObserver(std::uint64_t api, Operation operation, const char* json) const {
    Observer told;
    {
        const std::lock_guard lock(mutex);
        told = observer;
    }
    if (told.call != nullptr) {
        told.call(told.context, api, operationName(operation), json);
    }
}

void Controls::setDocumentWatch(const DocumentWatch& told) {
    const std::lock_guard lock(mutex);
    watch = told;
}

DocumentWatch Controls::documentWatch() const {
    const std::lock_guard lock(mutex);
    return watch;
}

} // namespace sim
