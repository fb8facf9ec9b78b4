/// Reads the request documents, as strictly as their contract is written.
#pragma once

#include "backend-sim/Operation.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// A request's values by key.
using Request = std::map<std::string, std::string, std::less<>>;

/// The value of a key that the operation's document has.
inline const std::string& valueOf(const Request& request, std::string_view key) {
    return request.find(key)->second;
}

/// The request in `json`, if that is one flat JSON object which holds exactly the keys of the operation's
/// document, each once and each with a text. An operation without a document has no valid request.
std::optional<Request> readRequest(Operation operation, std::string_view json);

} // namespace sim
