#include "host/serve/Site.h"

#include "host/Files.h"
#include "host/HostError.h"

#include <charconv>
#include <limits>

namespace host::serve {
namespace {

constexpr std::string_view socketName = "live";
constexpr std::string_view indexName = "app/index.html";

constexpr unsigned ok = 200;
constexpr unsigned forbidden = 403;
constexpr unsigned notFound = 404;
constexpr unsigned methodNotAllowed = 405;
constexpr unsigned upgradeRequired = 426;

// What each kind of page may do. The names between blanks are those of the header.

constexpr const char* nothingPolicy = "default-src 'none'; base-uri 'none'; form-action 'none'; "
                                      "frame-ancestors 'none'";
constexpr const char* localPagePolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'self'";
constexpr const char* loginPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'self'; "
    "frame-ancestors 'self'; sandbox allow-forms allow-same-origin";

std::string pagePolicy(std::string_view host) {
    return "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self' "
           "ws://" +
           std::string(host) +
           "; frame-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

SiteAnswer answerOf(unsigned status, std::string type, std::string policy, std::string body) {
    return {status,
            {{"Content-Type", std::move(type)},
             {"Content-Security-Policy", std::move(policy)},
             {"X-Content-Type-Options", "nosniff"},
             {"Referrer-Policy", "no-referrer"},
             {"Cache-Control", "no-store"},
             {"Cross-Origin-Opener-Policy", "same-origin"},
             {"Cross-Origin-Resource-Policy", "same-origin"}},
            std::move(body)};
}

SiteAnswer wrongMethod(const char* allowed) {
    SiteAnswer answer = Site::plainAnswer(methodNotAllowed, "This address does not know that method.");
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

bool isReading(std::string_view method) { return method == "GET" || method == "HEAD"; }

/// The number in "NUMBER/", spelled as one spells it.
std::optional<std::uint64_t> numberOf(std::string_view place) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(place.data(), place.data() + place.size(), number);
    const bool isNumber = error == std::errc() && std::to_string(number) + "/" == place;
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

SiteAnswer Site::plainAnswer(unsigned status, std::string_view words) {
    return answerOf(status, "text/plain; charset=utf-8", nothingPolicy, std::string(words) + "\n");
}

bool Site::admitsSocket(const AccessClaim& claim) const { return rule.admit(claim) == socketName; }

SiteAnswer Site::answer(const SiteRequest& request) const {
    const auto path = rule.admit(request.claim);
    return path ? answerBelow(*path, request) : plainAnswer(forbidden, "This is not for you.");
}

SiteAnswer Site::answerBelow(std::string_view path, const SiteRequest& request) const {
    constexpr std::string_view loginFolder = "browser/";
    if (path.starts_with(loginFolder)) {
        return login(path.substr(loginFolder.size()), request);
    }
    if (!isReading(request.method)) {
        return wrongMethod("GET, HEAD");
    }
    if (path == socketName) {
        SiteAnswer answer = plainAnswer(upgradeRequired, "This is the address of a WebSocket.");
        answer.headers.emplace_back("Upgrade", "websocket");
        return answer;
    }
    if (path == "session.jsonl") {
        return recording();
    }
    return asset(path.empty() ? indexName : path, request);
}

SiteAnswer Site::asset(std::string_view name, const SiteRequest& request) const {
    const Asset* found = assets.find(name);
    if (found == nullptr) {
        return plainAnswer(notFound,
                           name == indexName ? "The page is not installed." : "There is no such page.");
    }
    try {
        const bool isOfPage = name.starts_with("app/");
        return answerOf(ok, std::string(found->type),
                        isOfPage ? pagePolicy(*request.claim.host) : localPagePolicy,
                        readRegularFile(found->file));
    } catch (const HostError&) {
        return plainAnswer(notFound, "This page is no longer there.");
    }
}

SiteAnswer Site::recording() const {
    const JournalSlice slice = view.events().after(0, std::numeric_limits<std::size_t>::max());
    SiteAnswer answer = answerOf(ok, "application/x-ndjson", nothingPolicy, sessionText(slice, secrets));
    answer.headers.emplace_back("Content-Disposition", "attachment; filename=\"session.jsonl\"");
    return answer;
}

SiteAnswer Site::login(std::string_view place, const SiteRequest& request) const {
    const auto number = numberOf(place);
    if (!number) {
        return plainAnswer(notFound, "There is no such page.");
    }
    if (!isReading(request.method) && request.method != "POST") {
        return wrongMethod("GET, HEAD, POST");
    }
    LoginAnswer page = view.answerLogin(*number, request.method, std::string(request.body));
    SiteAnswer answer = answerOf(page.status, "text/html; charset=utf-8", loginPolicy, std::move(page.html));
    for (auto& [name, value] : answer.headers) {
        if (name == "Referrer-Policy") {
            value = "same-origin"; // with less, a browser leaves its form's origin unsaid
        }
    }
    return answer;
}

} // namespace host::serve
