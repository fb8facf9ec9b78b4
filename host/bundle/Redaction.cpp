#include "host/bundle/Redaction.h"

#include "host/recording/Redactor.h"

#include <boost/json/value.hpp>

#include <array>
#include <string_view>
#include <utility>

namespace host::bundle {
namespace {

namespace json = boost::json;

using TextHandler = std::function<void(std::string_view key, json::string& text)>;

void visit(std::string_view key, json::value& value, const TextHandler& handler);

void visit(json::object& object, const TextHandler& handler) {
    for (auto& member : object) {
        visit(member.key(), member.value(), handler);
    }
}

/// Elements of arrays go by the array's key.
void visit(std::string_view key, json::value& value, const TextHandler& handler) {
    if (value.is_object()) {
        visit(value.get_object(), handler);
    } else if (value.is_array()) {
        for (json::value& element : value.get_array()) {
            visit(key, element, handler);
        }
    } else if (value.is_string()) {
        handler(key, value.get_string());
    }
}

/// Knows what the system tells of its user, and what variables hold.
void learn(Scrubber& scrubber, const SystemFacts& facts) {
    for (const std::string& name : facts.userNames) {
        scrubber.know(SecretKind::Person, name);
    }
    for (const std::string& folder : facts.homeFolders) {
        scrubber.know(SecretKind::Person, folder);
    }
    scrubber.know(SecretKind::Person, facts.hostName);
    for (const auto& [name, value] : facts.environment) {
        if (isSecretKey(name) && !name.ends_with("PWD")) { // shells keep their folder in some of that name
            scrubber.know(SecretKind::Secret, value);
        }
    }
}

struct CountedKind {
    SecretKind kind;
    const char* words;
};
constexpr std::array<CountedKind, 5> countedKinds{{
    {SecretKind::Secret, "secrets"},
    {SecretKind::Person, "persons and machines"},
    {SecretKind::Mail, "e-mail addresses"},
    {SecretKind::Certificate, "certificates and keys"},
    {SecretKind::Fingerprint, "fingerprints"},
}};

} // namespace

std::string redactAll(const std::vector<json::object*>& objects, const SystemFacts& facts) {
    const auto eachText = [&objects](const TextHandler& handler) {
        for (json::object* const object : objects) {
            visit(*object, handler);
        }
    };
    Scrubber scrubber;
    learn(scrubber, facts);
    eachText([&](std::string_view, json::string& text) { scrubber.learn(SecretKind::Secret, text); });
    Redactor redactor;
    eachText([&](std::string_view key, json::string& text) { redactor.learn({{key, text}}); });
    std::size_t changed = 0;
    eachText([&](std::string_view key, json::string& text) {
        json::object line{{key, text}};
        redactor.redact(line);
        json::string& redacted = line.begin()->value().get_string();
        changed += redacted != text ? 1 : 0;
        text = std::move(redacted);
    });
    // What the queries of URLs say of persons is gone by now. Ids there look like names, and are needed
    // elsewhere.
    eachText([&](std::string_view, json::string& text) { scrubber.learn(SecretKind::Person, text); });
    eachText([&](std::string_view, json::string& text) { text = scrubber.scrub(std::string(text)); });
    std::string replaced = "texts with cookies, values of browsers or queries of URLs: ";
    replaced += std::to_string(changed);
    const auto counts = scrubber.counts();
    for (const CountedKind& counted : countedKinds) {
        const auto count = counts.find(counted.kind);
        const std::size_t number = count == counts.end() ? 0 : count->second;
        replaced.append("; ").append(counted.words).append(": ").append(std::to_string(number));
    }
    return replaced;
}

} // namespace host::bundle
