#include "host/recording/Spellings.h"

#include "host/Text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <set>

namespace host {
namespace {

std::string asJson(const std::string& text) {
    const std::string quoted = boost::json::serialize(boost::json::value(text));
    return quoted.substr(1, quoted.size() - 2);
}

bool isWord(std::string_view text, std::size_t begin, std::size_t end) {
    return (begin == 0 || !isWordCharacter(text[begin - 1])) &&
           (end == text.size() || !isWordCharacter(text[end]));
}

} // namespace

bool isWordCharacter(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '_' || character == '-';
}

std::vector<std::string> spellingsOf(const std::string& text) {
    const std::set<std::string> all{text, xmlEscaped(text), asJson(text), xmlEscaped(asJson(text))};
    std::vector<std::string> spellings(all.begin(), all.end());
    std::stable_sort(spellings.begin(), spellings.end(),
                     [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    return spellings;
}

std::size_t replaceAll(std::string& text, std::string_view old, std::string_view replacement,
                       bool onlyWords) {
    std::size_t count = 0;
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at)) {
        if (onlyWords && !isWord(text, at, at + old.size())) {
            ++at;
        } else {
            text.replace(at, old.size(), replacement);
            at += replacement.size();
            ++count;
        }
    }
    return count;
}

} // namespace host
