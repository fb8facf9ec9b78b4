/// Takes out of texts what is nobody else's business.
#pragma once

#include "host/bundle/SecretPlaces.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace host::bundle {

/// Replaces secrets, persons, addresses of e-mail, certificates and fingerprints, each by a name of its own
/// ("[secret-1]",
/// "[person-2]", ...) that is the same wherever it shows. It looks into Base64. It takes out too much rather
/// than too little.
///
/// Secrets of six bytes or more and persons of three or more are taken out wherever they show, once they are
/// learnt: texts are learnt before the first is scrubbed.
class Scrubber {
public:
    /// A secret or a name that is known beforehand; one that is too short or on everybody's machine is passed
    /// over.
    void know(SecretKind kind, const std::string& text);
    /// Takes note of what the text holds behind keys of that kind: secrets or persons.
    void learn(SecretKind kind, std::string_view text);

    std::string scrub(std::string text);

    /// How many different ones were replaced so far.
    std::map<SecretKind, std::size_t> counts() const;

private:
    using Search = void (*)(std::string_view, const PlaceHandler&);

    const std::string& nameOf(SecretKind kind, std::string_view text);
    void replace(std::string& text, Search search);
    void replaceKnown(std::string& text, SecretKind which);
    void replaceBase64(std::string& text);

    std::map<std::string, std::string, std::less<>> names; ///< by what they stand for
    std::map<SecretKind, std::size_t> numbers;             ///< how many of each kind have a name
    std::map<std::string, SecretKind> known;               ///< looked for everywhere
};

} // namespace host::bundle
