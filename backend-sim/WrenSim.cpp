#include "backend-sim/WrenSim.h"

#include "backend-sim/Backend.h"

using sim::Backend;

void wrensim_set_quiet(bool quiet) { Backend::instance().controls().setQuiet(quiet); }

void wrensim_set_pace(uint32_t percent) { Backend::instance().setPace(percent); }

WrenSimDelivery wrensim_deliver(uint64_t api, WrenSimDocument document, const char* json) {
    return Backend::instance().deliver(api, document, json, false);
}

WrenSimDelivery wrensim_deliver_and_wait(uint64_t api, WrenSimDocument document, const char* json) {
    return Backend::instance().deliver(api, document, json, true);
}

bool wrensim_has_receiver(uint64_t api) { return Backend::instance().hasReceiver(api); }

void wrensim_forget_receivers(void) { Backend::instance().forgetReceivers(); }

bool wrensim_wait_idle(void) { return Backend::instance().waitUntilIdle(); }

void wrensim_hold_time(int64_t unix_seconds) { Backend::instance().time().holdTime(unix_seconds); }

void wrensim_advance_time(uint32_t milliseconds) {
    Backend::instance().time().advanceTime(std::chrono::milliseconds(milliseconds));
}

void wrensim_release_time(void) { Backend::instance().time().releaseTime(); }

bool wrensim_set_result(const char* operation, uint32_t result, uint32_t times) {
    const auto known = operation != nullptr ? sim::operationOf(operation) : std::nullopt;
    if (known) {
        Backend::instance().controls().setResult(*known, static_cast<QuillApiResult>(result), times);
    }
    return known.has_value();
}

void wrensim_set_null_api(bool null_api) { Backend::instance().controls().setNullApi(null_api); }

void wrensim_set_factory_expired(bool expired) { Backend::instance().setFactoryExpired(expired); }

void wrensim_reset(void) {
    Backend::instance().controls().clearResults();
    Backend::instance().controls().setNullApi(false);
    Backend::instance().setFactoryExpired(false);
}

void wrensim_observe(WrenSimObserver observer, void* context) {
    Backend::instance().controls().setObserver(observer, context);
}
