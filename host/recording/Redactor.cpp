#include "host/recording/Redactor.h"

#include "host/Text.h"
#include "host/recording/Spellings.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace host {
namespace {

namespace json = boost::json;

constexpr std::string_view nameBegin = "redacted-";
constexpr std::string_view bytesMark = "_base64";
constexpr std::string_view blanks = " \t\r\n";

/// Least length of what is looked for everywhere, and of what is taken out of longer words too.
constexpr std::size_t leastAsWord = 4;
constexpr std::size_t leastAnywhere = 6;
/// Least length of Base64 that is looked into: nothing shorter can hold much.
constexpr std::size_t leastBase64 = 16;

struct SecretKey {
    std::string_view quoted;
    bool isSpread; ///< a password may be any word: it goes only where it stands
};
constexpr std::array<SecretKey, 4> secretKeys{{
    {"\"enrollment_cookie\"", true},
    {"\"authorization_cookie\"", true},
    {"\"cookie\"", true},
    {"\"password\"", false},
}};

struct Entity {
    std::string_view spelled;
    char character;
};
constexpr std::array<Entity, 5> entities{
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};

std::string withoutEntities(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto entity = std::find_if(entities.begin(), entities.end(), [&](const Entity& known) {
            return text.starts_with(known.spelled);
        });
        plain += entity != entities.end() ? entity->character : text.front();
        text.remove_prefix(entity != entities.end() ? entity->spelled.size() : 1);
    }
    return plain;
}

std::string withoutEscapes(std::string_view text) {
    json::error_code error;
    const json::value value = json::parse("\"" + std::string(text) + "\"", error);
    return !error && value.is_string() ? std::string(value.get_string()) : std::string(text);
}

/// Where the text between quotation marks that begins at `begin` ends; npos where it does not.
std::size_t endOfQuoted(std::string_view text, std::size_t begin, char quote, bool hasEscapes) {
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] == quote) {
            return at;
        }
        at += hasEscapes && text[at] == '\\' ? 1 : 0;
    }
    return std::string_view::npos;
}

/// Skips blanks, one character and blanks.
/// @return where it goes on; npos where that character does not stand there
std::size_t behind(std::string_view text, std::size_t at, char character) {
    at = text.find_first_not_of(blanks, at);
    return at != std::string_view::npos && text[at] == character ? text.find_first_not_of(blanks, at + 1)
                                                                 : std::string_view::npos;
}

/// How many characters at the beginning of the text belong together inside a URL; 0: the URL ends there.
std::size_t stepOfUrl(std::string_view text, bool isXml) {
    const char first = text.front();
    if (static_cast<unsigned char>(first) <= ' ' || first == '"' || first == '\'' || first == '<' ||
        first == '>' || first == '`') {
        return 0;
    }
    if (first == '\\') {
        return text.starts_with("\\/") ? 2 : text.starts_with("\\u0026") ? 6 : 0;
    }
    if (isXml && first == '&') {
        return text.starts_with("&amp;") ? 5 : 0;
    }
    return 1;
}

std::size_t endOfUrl(std::string_view text, std::size_t at, bool isXml) {
    while (at < text.size()) {
        const std::size_t step = stepOfUrl(text.substr(at), isXml);
        if (step == 0) {
            break;
        }
        at += step;
    }
    return at;
}

bool isBase64Digit(char character) {
    return isWordCharacter(character) ? character != '_' && character != '-'
                                      : character == '+' || character == '/';
}

} // namespace

Redactor::Spelling Redactor::spellingOf(std::string_view key) {
    return key.starts_with("xml")    ? Spelling::Xml
           : key.starts_with("json") ? Spelling::Json
                                     : Spelling::Message;
}

/// Finds the next place of a kind that holds secrets: an attribute "value" of an event, or one of the keys.
bool Redactor::findPlace(std::string_view text, std::size_t from, bool isEvent, Place& place) {
    std::size_t best = std::string_view::npos;
    const auto offer = [&](std::size_t quote, bool isXml, bool isKept) {
        if (quote == std::string_view::npos || quote >= best || (text[quote] != '"' && text[quote] != '\'')) {
            return;
        }
        const std::size_t end = endOfQuoted(text, quote + 1, text[quote], !isXml);
        if (end != std::string_view::npos && end > quote + 1) {
            best = quote;
            place = {quote + 1, end, isXml, isKept};
        }
    };
    constexpr std::string_view attribute = "value";
    for (std::size_t at = isEvent ? text.find(attribute, from) : std::string_view::npos; at < best;
         at = text.find(attribute, at + 1)) {
        if (at > 0 && blanks.find(text[at - 1]) != std::string_view::npos) {
            offer(behind(text, at + attribute.size(), '='), true, true);
        }
    }
    for (const SecretKey& key : secretKeys) {
        for (std::size_t at = text.find(key.quoted, from); at != std::string_view::npos;
             at = text.find(key.quoted, at + 1)) {
            offer(behind(text, at + key.quoted.size(), ':'), false, key.isSpread);
        }
    }
    return best != std::string_view::npos;
}

void Redactor::learn(const json::object& line) {
    const bool isEvent = line.contains("do") && line.at("do") == "event";
    for (const auto& field : line) {
        if (!field.value().is_string()) {
            continue;
        }
        const std::string_view key = field.key();
        std::string text(field.value().get_string());
        if (key.ends_with(bytesMark)) {
            text = decodeBase64(text).value_or("");
        }
        Place place;
        for (std::size_t from = 0; findPlace(text, from, isEvent, place); from = place.end) {
            const std::string spelled = text.substr(place.begin, place.end - place.begin);
            const std::string secret = place.isXml ? withoutEntities(spelled) : withoutEscapes(spelled);
            if (place.isKept) {
                spread.insert_or_assign(secret, nameOf(secret));
            }
        }
    }
}

void Redactor::redact(json::object& line) {
    const bool isEvent = line.contains("do") && line.at("do") == "event";
    for (auto& field : line) {
        const std::string_view key = field.key();
        if (!field.value().is_string() || key == "do" || key == "out") {
            continue;
        }
        const std::string text(field.value().get_string());
        const auto bytes = key.ends_with(bytesMark) ? decodeBase64(text) : std::nullopt;
        field.value() = bytes ? encodeBase64(redacted(*bytes, spellingOf(key), isEvent))
                              : redacted(text, spellingOf(key), isEvent);
    }
}

const std::string& Redactor::nameOf(const std::string& secret) {
    const auto [name, isNew] = names.try_emplace(secret);
    if (isNew) {
        name->second = std::string(nameBegin) + std::to_string(names.size());
    }
    return name->second;
}

std::string Redactor::redacted(std::string text, Spelling spelling, bool isEvent) {
    redactPlaces(text, isEvent);
    redactKnown(text, spelling);
    redactQueries(text, spelling);
    redactBase64(text);
    return text;
}

void Redactor::redactPlaces(std::string& text, bool isEvent) {
    Place place;
    for (std::size_t from = 0; findPlace(text, from, isEvent, place);) {
        const std::string spelled = text.substr(place.begin, place.end - place.begin);
        const std::string& name = nameOf(place.isXml ? withoutEntities(spelled) : withoutEscapes(spelled));
        text.replace(place.begin, spelled.size(), name);
        from = place.begin + name.size();
    }
}

void Redactor::redactKnown(std::string& text, Spelling spelling) const {
    std::vector<std::pair<std::string, std::string>> secrets(spread.begin(), spread.end());
    std::stable_sort(secrets.begin(), secrets.end(),
                     [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
    for (const auto& [secret, name] : secrets) {
        if (secret.size() < leastAsWord && spelling != Spelling::Message) {
            continue;
        }
        for (const std::string& spelled : spellingsOf(secret)) {
            replaceAll(text, spelled, name, secret.size() < leastAnywhere);
        }
    }
}

void Redactor::redactQueries(std::string& text, Spelling spelling) {
    const bool isXml = spelling == Spelling::Xml;
    for (std::size_t at = text.find(':'); at != std::string::npos; at = text.find(':', at + 1)) {
        const std::string_view rest = std::string_view(text).substr(at + 1);
        if (!rest.starts_with("//") && !rest.starts_with("\\/\\/")) {
            continue;
        }
        const std::size_t end = endOfUrl(text, at + 1, isXml);
        const std::size_t mark = text.find_first_of("?#", at);
        if (mark == std::string::npos || mark + 1 >= end) {
            continue;
        }
        std::string query = text.substr(mark + 1, end - mark - 1);
        if (query.starts_with(nameBegin)) {
            continue;
        }
        query = withoutEscapes(isXml ? withoutEntities(query) : query);
        const std::string& name = nameOf(query);
        text.replace(mark + 1, end - mark - 1, name);
        at = mark + name.size();
    }
}

void Redactor::redactBase64(std::string& text) {
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        if (!isBase64Digit(text[begin])) {
            continue;
        }
        std::size_t end = begin;
        while (end < text.size() && isBase64Digit(text[end])) {
            ++end;
        }
        const std::size_t digits = end;
        while (end < text.size() && end < digits + 2 && text[end] == '=') {
            ++end;
        }
        if (end - begin >= leastBase64) {
            if (const auto decoded = decodeBase64(std::string_view(text).substr(begin, end - begin))) {
                const std::string inner = redacted(*decoded, Spelling::Json, false);
                if (inner != *decoded) {
                    const std::string encoded = encodeBase64(inner);
                    text.replace(begin, end - begin, encoded);
                    end = begin + encoded.size();
                }
            }
        }
        begin = end;
    }
}

} // namespace host
