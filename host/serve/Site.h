/// What stands at which address.
#pragma once

#include "host/serve/AccessRule.h"
#include "host/serve/Assets.h"
#include "host/serve/LiveView.h"
#include "host/serve/Recording.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::serve {

/// A request, taken apart.
struct SiteRequest {
    std::string_view method;
    AccessClaim claim;
    std::string_view body;
};

struct SiteAnswer {
    unsigned status = 0;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

/// Answers every request but those for the socket. On the server's thread.
class Site {
public:
    /// All must outlive the site.
    Site(const AccessRule& usedRule, const Assets& usedAssets, LiveView& usedView, Secrets usedSecrets)
        : rule(usedRule)
        , assets(usedAssets)
        , view(usedView)
        , secrets(usedSecrets) {}

    SiteAnswer answer(const SiteRequest& request) const;

    /// Whether the request may have a socket. If not, `answer` tells why.
    bool admitsSocket(const AccessClaim& claim) const;

    /// An answer of that status that says so in words.
    static SiteAnswer plainAnswer(unsigned status, std::string_view words);

private:
    SiteAnswer answerBelow(std::string_view path, const SiteRequest& request) const;
    SiteAnswer asset(std::string_view name, const SiteRequest& request) const;
    SiteAnswer recording() const;
    SiteAnswer login(std::string_view place, const SiteRequest& request) const;

    const AccessRule& rule;
    const Assets& assets;
    LiveView& view;
    const Secrets secrets;
};

} // namespace host::serve
