#include "host/bundle/Scrubber.h"

#include "host/Text.h"
#include "host/recording/Spellings.h"

#include <algorithm>
#include <array>
#include <vector>

namespace host::bundle {
namespace {

/// By kind.
constexpr std::array<std::string_view, 5> kindWords{"secret", "person", "e-mail", "certificate",
                                                    "fingerprint"};
static_assert(static_cast<std::size_t>(SecretKind::Fingerprint) + 1 == kindWords.size());

constexpr std::size_t leastSecret = 6;
constexpr std::size_t leastPerson = 3;

/// Names that tell nothing of anybody.
constexpr std::array<std::string_view, 4> everybodys{"root", "/root", "localhost", "/"};

/// The ways in which a name may be spelled: people write theirs as they like.
std::vector<std::string> casesOf(const std::string& name) {
    std::vector<std::string> cases{name, name, name, name};
    const auto asUpper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    const auto asLower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    std::transform(name.begin(), name.end(), cases[1].begin(), asUpper);
    std::transform(name.begin(), name.end(), cases[2].begin(), asLower);
    cases[3] = cases[2];
    cases[3].front() = asUpper(cases[3].front());
    return cases;
}

bool isPlainText(std::string_view text) {
    return isUtf8(text) && std::none_of(text.begin(), text.end(), [](char character) {
               return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\r' &&
                      character != '\n';
           });
}

/// The word of a header's value that is the secret: the first one, or the one behind the name of a scheme.
std::string_view mainWordOf(std::string_view value) {
    constexpr std::string_view ends = " \t;,";
    for (const std::string_view scheme : {"Bearer ", "Basic ", "Digest ", "Negotiate "}) {
        value.remove_prefix(value.starts_with(scheme) ? scheme.size() : 0);
    }
    return value.substr(0, value.find_first_of(ends));
}

} // namespace

void Scrubber::know(SecretKind kind, const std::string& text) {
    const std::size_t least = kind == SecretKind::Person ? leastPerson : leastSecret;
    if (text.size() >= least && std::find(everybodys.begin(), everybodys.end(), text) == everybodys.end()) {
        known.try_emplace(text, kind);
    }
}

void Scrubber::learn(SecretKind kind, std::string_view text) {
    findKeyedValues(text, [&](const SecretPlace& place) {
        const std::string_view value = text.substr(place.begin, place.end - place.begin);
        if (place.kind == kind) {
            know(kind, std::string(value));
            know(kind, std::string(kind == SecretKind::Secret ? mainWordOf(value) : value));
        }
    });
    findBase64(text, [&](std::size_t begin, std::size_t end) {
        const auto decoded = decodeBase64(text.substr(begin, end - begin));
        if (decoded && isPlainText(*decoded)) {
            learn(kind, *decoded);
        }
    });
}

std::string Scrubber::scrub(std::string text) {
    replaceBase64(text);
    replace(text, findCertificates);
    replace(text, findKeyedValues);
    replaceKnown(text, SecretKind::Secret);
    replace(text, findByForm);
    replaceKnown(text, SecretKind::Person);
    return text;
}

std::map<SecretKind, std::size_t> Scrubber::counts() const { return numbers; }

const std::string& Scrubber::nameOf(SecretKind kind, std::string_view text) {
    const auto [name, isNew] = names.try_emplace(std::string(text));
    if (isNew) {
        name->second.append("[").append(kindWords[static_cast<std::size_t>(kind)]).append("-");
        name->second.append(std::to_string(++numbers[kind])).append("]");
    }
    return name->second;
}

void Scrubber::replace(std::string& text, Search search) {
    std::string result;
    std::size_t from = 0;
    search(text, [&](const SecretPlace& place) {
        const std::string_view secret = std::string_view(text).substr(place.begin, place.end - place.begin);
        result.append(text, from, place.begin - from);
        const bool hasName = secret.starts_with('[') && secret.ends_with(']');
        result.append(hasName ? std::string(secret) : nameOf(place.kind, secret));
        from = place.end;
    });
    text = result.append(text, from);
}

void Scrubber::replaceKnown(std::string& text, SecretKind which) {
    const bool isName = which == SecretKind::Person;
    std::vector<std::string> longestFirst;
    for (const auto& [secret, kind] : known) {
        if (kind == which) {
            longestFirst.push_back(secret);
        }
    }
    std::stable_sort(longestFirst.begin(), longestFirst.end(),
                     [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    for (const std::string& secret : longestFirst) {
        for (const std::string& written : isName ? casesOf(secret) : std::vector{secret}) {
            for (const std::string& spelled : spellingsOf(written)) {
                if (text.find(spelled) != std::string::npos) {
                    replaceAll(text, spelled, nameOf(which, secret), isName);
                }
            }
        }
    }
}

/// What is a text inside is scrubbed there; anything else is left to the other searches.
void Scrubber::replaceBase64(std::string& text) {
    std::string result;
    std::size_t from = 0;
    findBase64(text, [&](std::size_t begin, std::size_t end) {
        const auto decoded = decodeBase64(std::string_view(text).substr(begin, end - begin));
        if (!decoded || !isPlainText(*decoded)) {
            return;
        }
        result.append(text, from, begin - from).append("[base64: ").append(scrub(*decoded)).append("]");
        from = end;
    });
    text = result.append(text, from);
}

} // namespace host::bundle
