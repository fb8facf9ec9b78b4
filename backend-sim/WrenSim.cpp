#include "backend-sim/WrenSim.h"

#include "backend-sim/Backend.h"
#include "backend-sim/ScenarioError.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

using sim::Backend;

namespace {

/// Copies what fits, up to the last whole character, and ends it. @return the length of the text
size_t copyOut(std::string_view text, char* buffer, size_t size) {
    if (buffer != nullptr && size > 0) {
        size_t length = std::min(text.size(), size - 1);
        const auto isInsideCharacter = [&] {
            return (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80;
        };
        while (length < text.size() && length > 0 && isInsideCharacter()) {
            --length;
        }
        std::copy_n(text.begin(), length, buffer);
        buffer[length] = '\0';
    }
    return text.size();
}

const char* required(const char* json) {
    if (json == nullptr) {
        throw sim::ScenarioError("no text was given");
    }
    return json;
}

/// Does what may fail. @return whether it did not
template <class Work>
bool attempt(char* error, size_t size, Work work) {
    try {
        work();
        copyOut("", error, size);
        return true;
    } catch (const std::exception& failure) {
        copyOut(failure.what(), error, size);
        return false;
    }
}

} // namespace

void wrensim_set_quiet(bool quiet) { Backend::instance().controls().setQuiet(quiet); }

void wrensim_set_pace(uint32_t percent) { Backend::instance().setPace(percent); }

bool wrensim_load_scenario(const char* json, char* error, size_t error_size) {
    return attempt(error, error_size, [&] { Backend::instance().loadScenario(required(json)); });
}

bool wrensim_set(const char* json, char* error, size_t error_size) {
    return attempt(error, error_size, [&] { Backend::instance().setKnobs(required(json)); });
}

size_t wrensim_state(char* buffer, size_t size) {
    size_t length = 0;
    attempt(nullptr, 0, [&] { length = copyOut(Backend::instance().serviceState(), buffer, size); });
    return length;
}

size_t wrensim_login_cookie(WrenSimLogin login, const char* id, char* buffer, size_t size) {
    size_t length = 0;
    attempt(nullptr, 0, [&] {
        const sim::LoginCookies& logins = Backend::instance().logins();
        const auto cookie = id != nullptr ? logins.cookieOf(login, id) : logins.latestCookie(login);
        length = copyOut(cookie.value_or(""), buffer, size);
    });
    return length;
}

bool wrensim_login_page(const char* method, const char* url, const char* body, WrenSimPageReceiver receive,
                        void* context) {
    if (method == nullptr || url == nullptr || receive == nullptr) {
        return false;
    }
    std::optional<sim::LoginPage> page;
    attempt(nullptr, 0, [&] {
        page = Backend::instance().loginPage({method, url, body != nullptr ? body : ""});
    });
    if (page) {
        receive(context, page->status, page->location.empty() ? nullptr : page->location.c_str(),
                page->setCookie.empty() ? nullptr : page->setCookie.c_str(), page->html.c_str());
    }
    return page.has_value();
}

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

void wrensim_watch_documents(WrenSimBeforeDocument before, WrenSimAfterDocument after, void* context) {
    Backend::instance().controls().setDocumentWatch({before, after, context});
}
