#include "host/SessionFile.h"

#include "host/DuplicateKeys.h"
#include "host/Files.h"
#include "host/HostError.h"
#include "host/SessionOutput.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <utility>

namespace host {
namespace {

namespace json = boost::json;

bool isSkipped(std::string_view line) {
    return line.starts_with('#') || line.find_first_not_of(" \t\r") == std::string_view::npos;
}

json::object parseLine(std::string_view line) {
    json::error_code error;
    const json::value value = json::parse(line, error);
    if (error) {
        throw HostError("not JSON: " + error.message());
    }
    if (!value.is_object()) {
        throw HostError("not a JSON object");
    }
    if (const auto key = duplicateKey(line)) {
        throw HostError("the key " + json::serialize(json::value(*key)) + " comes twice");
    }
    return value.get_object();
}

/// Adds the line to the session.
/// @param isFirst whether no line stands before it
void takeLine(Session& session, std::string_view text, unsigned number, bool isFirst) {
    const json::object fields = parseLine(text);
    const json::value* output = fields.if_contains("out");
    if (fields.contains("do") == (output != nullptr)) {
        throw HostError("a line holds either \"do\" or \"out\"");
    }
    if (output != nullptr) {
        checkOutput(fields);
        session.expectations.push_back({number, fields});
        return;
    }
    SessionInput input(fields, number);
    if (input.kind() == InputKind::Session && !isFirst) {
        throw HostError("\"session\" may only be the first line");
    }
    session.inputs.push_back(std::move(input));
}

} // namespace

std::optional<std::string> Session::timeZone() const {
    if (inputs.empty() || !inputs.front().has("time_zone")) {
        return std::nullopt;
    }
    return inputs.front().text("time_zone");
}

Session readSession(const std::filesystem::path& file) { return parseSession(readFile(file), file.string()); }

Session parseSession(std::string_view content, const std::string& name) {
    Session session{name, {}, {}};
    bool isFirst = true;
    for (unsigned number = 1; !content.empty(); ++number) {
        const std::string_view line = content.substr(0, content.find('\n'));
        content.remove_prefix(std::min(line.size() + 1, content.size()));
        if (isSkipped(line)) {
            continue;
        }
        try {
            takeLine(session, line, number, std::exchange(isFirst, false));
        } catch (const HostError& fault) {
            throw HostError(atLine(name, number, fault.what()));
        }
    }
    return session;
}

std::string atLine(const std::string& name, unsigned line, std::string_view what) {
    return name + ":" + std::to_string(line) + ": " + std::string(what);
}

} // namespace host
