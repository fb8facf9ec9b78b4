#include "host/serve/Recording.h"

#include "host/HostError.h"
#include "host/LogLine.h"
#include "host/SessionInput.h"
#include "host/Text.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <map>
#include <set>
#include <string_view>
#include <vector>

namespace host::serve {
namespace {

namespace json = boost::json;

constexpr std::string_view blank = "*";

/// Finds the cookies: they are what requests to the backend hold under certain keys. Whatever line shows one,
/// an event or a log line, shows it as it is there.
std::set<std::string, std::less<>> cookiesIn(const std::vector<JournalEntryPointer>& entries) {
    std::set<std::string, std::less<>> cookies;
    for (const JournalEntryPointer& entry : entries) {
        const json::value* request = entry->line.if_contains("json");
        if (!entry->line.contains("operation") || request == nullptr || !request->is_string()) {
            continue;
        }
        json::error_code error;
        const json::value parsed = json::parse(request->get_string(), error);
        for (const char* key : {"enrollment_cookie", "authorization_cookie"}) {
            const json::value* cookie =
                !error && parsed.is_object() ? parsed.get_object().if_contains(key) : nullptr;
            if (cookie != nullptr && cookie->is_string() && !cookie->get_string().empty()) {
                cookies.emplace(cookie->get_string());
            }
        }
    }
    return cookies;
}

void replaceAll(std::string& text, std::string_view old, std::string_view replacement) {
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at)) {
        text.replace(at, old.size(), replacement);
        at += replacement.size();
    }
}

/// Blanks the cookies out of a text, as they are and as XML and JSON spell them.
std::string withoutSecrets(std::string text, const std::set<std::string, std::less<>>& cookies) {
    for (const std::string& cookie : cookies) {
        const std::string quoted = json::serialize(json::value(cookie));
        replaceAll(text, cookie, blank);
        replaceAll(text, xmlEscaped(cookie), blank);
        replaceAll(text, std::string_view(quoted).substr(1, quoted.size() - 2), blank);
    }
    return text;
}

void blankOut(json::object& line, const std::set<std::string, std::less<>>& cookies) {
    for (auto& field : line) {
        if (field.value().is_string()) {
            field.value() = withoutSecrets(std::string(field.value().get_string()), cookies);
        }
    }
}

bool isSessionInput(const json::object& line) {
    try {
        [[maybe_unused]] const SessionInput input(line, 0);
        return true;
    } catch (const HostError&) {
        return false;
    }
}

bool isSessionOutput(const json::object& line) {
    const std::string_view word = line.at("out").as_string();
    const json::value* function = line.if_contains("function");
    const bool isOfTheMachine =
        function != nullptr && function->is_string() && tellsOfTheMachine(function->get_string());
    return word != "violation" && word != "info" && !isOfTheMachine;
}

} // namespace

std::string sessionText(const JournalSlice& slice, Secrets secrets) {
    std::set<std::string, std::less<>> cookies;
    if (secrets == Secrets::BlankedOut) {
        cookies = cookiesIn(slice.entries);
    }
    std::map<std::uint64_t, std::vector<json::object>> outputs; // by the input's sequence
    for (const JournalEntryPointer& entry : slice.entries) {
        if (!entry->isInput() && isSessionOutput(entry->line)) {
            outputs[entry->input].push_back(entry->line);
        }
    }
    std::string text = slice.missed == 0
                           ? ""
                           : "# the first " + std::to_string(slice.missed) + " entries are no longer there\n";
    unsigned number = 0;
    for (const JournalEntryPointer& entry : slice.entries) {
        if (!entry->isInput()) {
            continue;
        }
        json::object line = entry->line;
        blankOut(line, cookies);
        if (!isSessionInput(line)) {
            text += "# " + json::serialize(line) + "\n";
            continue;
        }
        text += json::serialize(line) + "\n";
        ++number;
        for (json::object& output : outputs[entry->sequence]) {
            blankOut(output, cookies);
            json::object numbered{{"n", number}};
            numbered.insert(output.begin(), output.end());
            text += json::serialize(numbered) + "\n";
        }
    }
    return text;
}

} // namespace host::serve
