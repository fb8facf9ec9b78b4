#include "host/serve/AccessRule.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <random>
#include <utility>

namespace host::serve {
namespace {

constexpr std::string_view scheme = "http://";

/// Compares in a time that does not tell where the texts differ.
bool isSecret(std::string_view given, std::string_view secret) {
    unsigned difference = given.size() == secret.size() ? 0 : 1;
    for (std::size_t i = 0; i < secret.size(); ++i) {
        const char other = i < given.size() ? given[i] : '\0';
        difference |= static_cast<unsigned char>(other ^ secret[i]);
    }
    return difference == 0;
}

} // namespace

AccessRule::AccessRule(std::string usedToken, unsigned short port)
    : token(std::move(usedToken))
    , hosts{"127.0.0.1:" + std::to_string(port), "localhost:" + std::to_string(port)} {}

std::optional<std::string_view> AccessRule::admit(const AccessClaim& claim) const {
    const bool isOurHost =
        claim.host && std::find(std::begin(hosts), std::end(hosts), *claim.host) != std::end(hosts);
    if (!isOurHost) {
        return std::nullopt;
    }
    if (claim.origin ? *claim.origin != std::string(scheme).append(*claim.host) : claim.wantsSocket) {
        return std::nullopt;
    }
    std::string_view path = claim.target.substr(0, claim.target.find('?'));
    if (!path.starts_with('/')) {
        return std::nullopt;
    }
    path.remove_prefix(1);
    const std::size_t end = path.find('/');
    if (!isSecret(path.substr(0, end), token) || end == path.npos) {
        return std::nullopt;
    }
    return path.substr(end + 1);
}

std::string randomToken() {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::size_t length = 32;
    std::random_device source;
    std::uniform_int_distribution<std::size_t> digit(0, digits.size() - 1);
    std::string token(length, ' ');
    std::generate(token.begin(), token.end(), [&] { return digits[digit(source)]; });
    return token;
}

} // namespace host::serve
