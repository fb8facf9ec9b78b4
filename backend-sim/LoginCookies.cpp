#include "backend-sim/LoginCookies.h"

#include <algorithm>
#include <cstdint>
#include <random>

namespace sim {
namespace {

std::string randomCookie() {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::size_t length = 32;
    std::random_device source;
    std::uniform_int_distribution<std::size_t> digit(0, digits.size() - 1);
    std::string cookie(length, ' ');
    std::generate(cookie.begin(), cookie.end(), [&] { return digits[digit(source)]; });
    return cookie;
}

} // namespace

void LoginCookies::open(WrenSimLogin kind, std::string_view id, std::string fixed) {
    const std::lock_guard lock(mutex);
    add(byKind[kind], id, std::move(fixed));
}

void LoginCookies::close(WrenSimLogin kind, std::string_view id) {
    const std::lock_guard lock(mutex);
    Logins& logins = byKind[kind];
    if (const auto found = logins.find(id); found != logins.end()) {
        logins.erase(found);
    }
}

void LoginCookies::closeAll() {
    const std::lock_guard lock(mutex);
    byKind.clear();
}

void LoginCookies::keep(WrenSimLogin kind, const std::vector<std::string>& ids, const std::string& fixed) {
    const std::lock_guard lock(mutex);
    Logins& logins = byKind[kind];
    std::erase_if(logins, [&](const auto& login) {
        return std::find(ids.begin(), ids.end(), login.first) == ids.end();
    });
    for (const std::string& id : ids) {
        if (!logins.contains(id)) {
            add(logins, id, fixed);
        }
    }
}

std::optional<std::string> LoginCookies::cookieOf(WrenSimLogin kind, std::string_view id) const {
    const std::lock_guard lock(mutex);
    const auto logins = byKind.find(kind);
    if (logins == byKind.end()) {
        return std::nullopt;
    }
    const auto found = logins->second.find(id);
    return found == logins->second.end() ? std::nullopt : std::optional(found->second.cookie);
}

std::optional<std::string> LoginCookies::latestCookie(WrenSimLogin kind) const {
    const std::lock_guard lock(mutex);
    const auto logins = byKind.find(kind);
    if (logins == byKind.end() || logins->second.empty()) {
        return std::nullopt;
    }
    const auto isEarlier = [](const auto& left, const auto& right) {
        return left.second.number < right.second.number;
    };
    return std::max_element(logins->second.begin(), logins->second.end(), isEarlier)->second.cookie;
}

std::vector<std::string> LoginCookies::openIds(WrenSimLogin kind) const {
    const std::lock_guard lock(mutex);
    std::vector<std::string> ids;
    if (const auto logins = byKind.find(kind); logins != byKind.end()) {
        for (const auto& [id, login] : logins->second) {
            ids.push_back(id);
        }
    }
    return ids;
}

bool LoginCookies::accepts(WrenSimLogin kind, std::string_view id, std::string_view cookie) const {
    return !cookie.empty() && cookieOf(kind, id) == cookie;
}

void LoginCookies::add(Logins& logins, std::string_view id, std::string fixed) {
    logins.insert_or_assign(std::string(id),
                            Login{fixed.empty() ? randomCookie() : std::move(fixed), ++opened});
}

} // namespace sim
