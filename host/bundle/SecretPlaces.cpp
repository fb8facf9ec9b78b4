#include "host/bundle/SecretPlaces.h"

#include "host/recording/Spellings.h"

#include <algorithm>
#include <array>

namespace host::bundle {
namespace {

constexpr std::size_t none = std::string_view::npos;

/// A key that holds one of these anywhere tells of a secret...
constexpr std::array<std::string_view, 13> secretWords{
    "password",   "passwd",        "passphrase", "pwd",     "secret",      "token",     "cookie",
    "credential", "authorization", "apikey",     "api_key", "private_key", "access_key"};
/// ... unless it ends in one of these: then it tells about a secret.
constexpr std::array<std::string_view, 8> harmlessEnds{"name",  "type",  "size",   "length",
                                                       "count", "state", "status", "policy"};
/// Keys that tell of a person.
constexpr std::array<std::string_view, 18> personKeys{
    "user",        "userid",    "user_id", "username", "user_name", "login",
    "login_name",  "loginname", "account", "upn",      "cn",        "principal",
    "common_name", "subject",   "email",   "e_mail",   "mail",      "display_user"};
/// Values that are none.
constexpr std::array<std::string_view, 5> emptyValues{"true", "false", "null", "none", "unknown"};

/// Least lengths of what is known by its form.
constexpr std::size_t leastHash = 32;
constexpr std::size_t leastPairs = 6;
constexpr std::size_t leastToken = 24;
constexpr std::size_t leastBase64 = 16;

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}
bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isLetter(char character) { return lower(character) >= 'a' && lower(character) <= 'z'; }
bool isHexDigit(char character) {
    return isDigit(character) || (lower(character) >= 'a' && lower(character) <= 'f');
}
bool isBase64Digit(char character) {
    return isDigit(character) || isLetter(character) || character == '+' || character == '/';
}
bool isBlank(char character) { return character == ' ' || character == '\t'; }

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char character) { return character == '-' ? '_' : lower(character); });
    return result;
}

template <class Predicate>
std::size_t endOfRun(std::string_view text, std::size_t at, Predicate belongs) {
    while (at < text.size() && belongs(text[at])) {
        ++at;
    }
    return at;
}

bool startsWith(std::string_view text, std::size_t at, std::string_view what) {
    return text.substr(std::min(at, text.size())).starts_with(what);
}

/// How long the quotation mark is that stands there, however it is escaped; 0: there is none.
std::size_t quoteAt(std::string_view text, std::size_t at) {
    const std::size_t mark = endOfRun(text, at, [](char character) { return character == '\\'; });
    for (const std::string_view spelled : {"\"", "'", "&quot;", "&apos;"}) {
        if (startsWith(text, mark, spelled)) {
            return mark - at + spelled.size();
        }
    }
    return 0;
}

enum class KeyKind { None, Secret, Person };

KeyKind kindOf(std::string_view key) {
    return isSecretKey(key) ? KeyKind::Secret
           : std::find(personKeys.begin(), personKeys.end(), lowered(key)) != personKeys.end()
               ? KeyKind::Person
               : KeyKind::None;
}

/// Where the value begins that belongs to the key which ends there: behind ":", "=" or ">", behind an
/// option's blank, or in the attribute "value" that follows; none: it has none.
std::size_t beginOfValue(std::string_view text, std::size_t keyEnd, std::string_view key) {
    constexpr std::string_view attribute = "value";
    const std::size_t quote = quoteAt(text, keyEnd);
    std::size_t at = endOfRun(text, keyEnd + quote, isBlank);
    if (key.starts_with("--") && quote == 0 && at > keyEnd) {
        return at;
    }
    at += quote > 0 && startsWith(text, at, attribute) ? attribute.size() : 0;
    if (startsWith(text, keyEnd, ">")) {
        return keyEnd + 1;
    }
    if (at >= text.size() || (text[at] != ':' && text[at] != '=') || startsWith(text, at, "::")) {
        return none;
    }
    const std::size_t begin = endOfRun(text, at + 1, isBlank);
    const std::size_t nextLine = endOfRun(text, begin, [](char character) {
        return isBlank(character) || character == '\r' || character == '\n';
    });
    return quoteAt(text, nextLine) > 0 ? nextLine : begin;
}

/// Where a value without quotation marks ends. That of an element may be anything; those of headers have
/// several words; those of secrets may hold what parts others.
std::size_t endOfPlainValue(std::string_view text, std::size_t begin, std::string_view key) {
    if (text[begin - 1] == '>') {
        return std::min(text.find('<', begin), text.size());
    }
    const std::string lowKey = lowered(key);
    const bool isHeader = lowKey.ends_with("authorization") || lowKey.ends_with("cookie");
    const bool hasWords = isHeader || lowKey == "cn" || lowKey == "subject";
    const bool isSecret = isSecretKey(key);
    std::size_t end = begin;
    for (; end < text.size(); ++end) {
        constexpr std::string_view ends = "\"'<>&\r\n\\}";
        const char character = text[end];
        const bool isLast = end + 1 == text.size() || static_cast<unsigned char>(text[end + 1]) <= ' ' ||
                            quoteAt(text, end + 1) > 0;
        const bool parts = (character == ',' || character == ';') && !isHeader && (!isSecret || isLast);
        if (parts || ends.find(character) != none ||
            (!hasWords && static_cast<unsigned char>(character) <= ' ')) {
            break;
        }
    }
    return end;
}

/// Where the text ends that such a mark has begun. Each level of quoting doubles the backslashes before a
/// mark inside.
std::size_t endOfQuoted(std::string_view text, std::size_t begin, std::string_view mark) {
    const std::size_t ownSlashes = endOfRun(mark, 0, [](char character) { return character == '\\'; });
    const std::string_view quote = mark.substr(ownSlashes);
    for (std::size_t at = text.find(quote, begin); at != none; at = text.find(quote, at + 1)) {
        std::size_t slashes = 0;
        while (at - slashes > begin && text[at - slashes - 1] == '\\') {
            ++slashes;
        }
        if (slashes % (2 * (ownSlashes + 1)) == ownSlashes) {
            return at - ownSlashes;
        }
    }
    return text.size();
}

/// The value that begins there, without its quotation marks; empty: it is not a text.
SecretPlace valueAt(std::string_view text, std::size_t begin, std::string_view key) {
    const std::size_t quote = quoteAt(text, begin);
    if (quote == 0) {
        const bool isText = begin < text.size() && text[begin] != '{' && text[begin] != '[';
        return {begin, isText ? endOfPlainValue(text, begin, key) : begin};
    }
    return {begin + quote, endOfQuoted(text, begin + quote, text.substr(begin, quote))};
}

bool isValue(std::string_view value) {
    return !value.empty() && std::find(emptyValues.begin(), emptyValues.end(), value) == emptyValues.end() &&
           !value.starts_with("redacted-");
}

std::size_t startOfMail(std::string_view text, std::size_t at) {
    while (at > 0 && (isWordCharacter(text[at - 1]) || text[at - 1] == '.' || text[at - 1] == '+')) {
        --at;
    }
    return at;
}

/// An address of e-mail around the "@" that stands there, with `width` characters.
SecretPlace mailAround(std::string_view text, std::size_t at, std::size_t width) {
    const std::size_t end = endOfRun(
        text, at + width, [](char character) { return isWordCharacter(character) || character == '.'; });
    const std::size_t begin = startOfMail(text, at);
    return {begin, begin < at && end > at + width + 1 ? end : begin, SecretKind::Mail};
}

/// User and password of a URL whose "//" ends there.
SecretPlace userOfUrl(std::string_view text, std::size_t begin) {
    const std::size_t end = endOfRun(text, begin, [](char character) {
        constexpr std::string_view ends = "/?#@\"'<>\\";
        return static_cast<unsigned char>(character) > ' ' && ends.find(character) == none;
    });
    return {begin, end < text.size() && text[end] == '@' ? end : begin, SecretKind::Secret};
}

/// A run of hexadecimal digits, or of pairs of them with colons or dashes between.
SecretPlace hashAt(std::string_view text, std::size_t begin) {
    const std::size_t digits = endOfRun(text, begin, isHexDigit);
    std::size_t end = digits;
    std::size_t pairs = digits == begin + 2 ? 1 : 0;
    if (pairs == 1 && end < text.size() && (text[end] == ':' || text[end] == '-')) {
        const char mark = text[end];
        while (end + 2 < text.size() && text[end] == mark && isHexDigit(text[end + 1]) &&
               isHexDigit(text[end + 2])) {
            end += 3;
            ++pairs;
        }
    }
    const bool isWhole = end == text.size() || !isWordCharacter(text[end]);
    const bool isHash = pairs >= leastPairs || (pairs == 0 && isWhole && digits - begin >= leastHash);
    return {begin, isHash ? end : begin, SecretKind::Fingerprint};
}

bool isTokenCharacter(char character) {
    return isBase64Digit(character) || character == '_' || character == '-';
}

/// Where the characters that tokens are made of end. Folders of a path are looked at one by one.
std::size_t endOfTokenRun(std::string_view text, std::size_t begin) {
    const bool isInPath = begin > 0 && (text[begin - 1] == '/' || text[begin - 1] == '\\');
    return endOfRun(text, begin, [&](char character) {
        return isTokenCharacter(character) && !(isInPath && character == '/');
    });
}

/// Digits, small and capital letters mixed, as in no word of ours: a token. Three such parts with points
/// between, the first of a known beginning, are one whatever they are made of.
SecretPlace tokenIn(std::string_view text, std::size_t begin, std::size_t end) {
    if (startsWith(text, begin, "eyJ") && startsWith(text, end, ".")) {
        const std::size_t second = endOfRun(text, end + 1, isTokenCharacter);
        if (second > end + 1 && startsWith(text, second, ".")) {
            return {begin, endOfRun(text, second + 1, isTokenCharacter)};
        }
    }
    const std::string_view run = text.substr(begin, end - begin);
    const auto has = [&](auto predicate) { return std::any_of(run.begin(), run.end(), predicate); };
    const bool isToken = run.size() >= leastToken && has(isDigit) &&
                         has([](char character) { return character >= 'a' && character <= 'z'; }) &&
                         has([](char character) { return character >= 'A' && character <= 'Z'; });
    return {begin, isToken ? endOfRun(text, end, [](char character) { return character == '='; }) : begin};
}

/// Looks at one place after the other. Each run of characters is looked at once, so that no text takes long.
class FormSearch {
public:
    explicit FormSearch(std::string_view searched)
        : text(searched) {}

    /// What has a form of its own and begins there, or stands around an "@" there; empty: nothing.
    SecretPlace at(std::size_t place) {
        if (text[place] == '@') {
            return mailAround(text, place, 1);
        }
        if (startsWith(text, place, "%40")) {
            return mailAround(text, place, 3);
        }
        if (startsWith(text, place, "//") && place > 0 && text[place - 1] == ':') {
            return userOfUrl(text, place + 2);
        }
        const bool isBegin =
            isWordCharacter(text[place]) && (place == 0 || !isWordCharacter(text[place - 1]));
        const SecretPlace hash = isBegin ? hashAt(text, place) : SecretPlace{};
        if (hash.end > hash.begin || !isBegin || place < seen) {
            return hash;
        }
        seen = endOfTokenRun(text, place);
        return tokenIn(text, place, seen);
    }

private:
    const std::string_view text;
    std::size_t seen = 0; ///< up to there no token begins
};

} // namespace

bool isSecretKey(std::string_view key) {
    const std::string name = lowered(key);
    return std::any_of(secretWords.begin(), secretWords.end(),
                       [&](std::string_view word) { return name.find(word) != std::string::npos; }) &&
           std::none_of(harmlessEnds.begin(), harmlessEnds.end(),
                        [&](std::string_view end) { return name.ends_with(end); });
}

void findCertificates(std::string_view text, const PlaceHandler& handler) {
    constexpr std::string_view first = "-----BEGIN ";
    constexpr std::string_view last = "-----END ";
    constexpr std::string_view dashes = "-----";
    for (std::size_t begin = text.find(first); begin != none; begin = text.find(first, begin)) {
        const std::size_t lastLine = text.find(last, begin);
        const std::size_t mark = lastLine == none ? none : text.find(dashes, lastLine + last.size());
        const std::size_t end = mark == none ? text.size() : mark + dashes.size();
        handler({begin, end, SecretKind::Certificate});
        begin = end;
    }
}

void findKeyedValues(std::string_view text, const PlaceHandler& handler) {
    for (std::size_t at = 0; at < text.size();) {
        if (!isWordCharacter(text[at])) {
            ++at;
            continue;
        }
        const std::size_t keyEnd = endOfRun(text, at, isWordCharacter);
        const std::string_view key = text.substr(at, keyEnd - at);
        at = keyEnd;
        const KeyKind kind = kindOf(key);
        const std::size_t begin = kind == KeyKind::None ? none : beginOfValue(text, keyEnd, key);
        if (begin == none) {
            continue;
        }
        SecretPlace place = valueAt(text, begin, key);
        if (isValue(text.substr(place.begin, place.end - place.begin))) {
            place.kind = kind == KeyKind::Person ? SecretKind::Person : SecretKind::Secret;
            handler(place);
            at = place.end;
        }
    }
}

void findByForm(std::string_view text, const PlaceHandler& handler) {
    FormSearch search(text);
    std::size_t told = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const SecretPlace place = search.at(at);
        if (place.end > place.begin && place.begin >= told) {
            handler(place);
            told = place.end;
            at = place.end - 1;
        }
    }
}

void findBase64(std::string_view text, const std::function<void(std::size_t, std::size_t)>& handler) {
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        const std::size_t digits = endOfRun(text, begin, isBase64Digit);
        const std::size_t end = endOfRun(text.substr(0, std::min(text.size(), digits + 2)), digits,
                                         [](char c) { return c == '='; });
        if (end - begin >= leastBase64) {
            handler(begin, end);
        }
        begin = std::max(begin, end);
    }
}

} // namespace host::bundle
