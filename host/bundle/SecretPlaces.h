/// Where texts hold what is nobody else's business.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace host::bundle {

enum class SecretKind {
    Secret,      ///< what stands behind a key such as "password", and tokens
    Person,      ///< what stands behind a key such as "user_name", and names that are known
    Mail,        ///< addresses of e-mail, and what is written like them
    Certificate, ///< certificates and keys, in their text form
    Fingerprint, ///< long numbers in hexadecimal digits: hashes, serial numbers, hardware addresses
};

/// A part of a text, which is not empty.
struct SecretPlace {
    std::size_t begin = 0;
    std::size_t end = 0;
    SecretKind kind = SecretKind::Secret;
};

/// Told of places in the order of the text, none of which overlaps another of the same search.
using PlaceHandler = std::function<void(const SecretPlace&)>;

/// From "-----BEGIN" to the end of the matching line, or of the text.
void findCertificates(std::string_view text, const PlaceHandler& handler);

/// Values behind keys that tell of secrets or persons, in JSON, in XML and in plain words: `"token": "x"`,
/// `token=x`, `Authorization: Bearer x`.
void findKeyedValues(std::string_view text, const PlaceHandler& handler);

/// What is known by its own form: user and password of URLs, addresses of e-mail, hashes, tokens.
void findByForm(std::string_view text, const PlaceHandler& handler);

/// Whether a key or a variable of that name holds a secret.
bool isSecretKey(std::string_view key);

/// Texts of Base64 digits long enough to hold something, with their padding.
void findBase64(std::string_view text,
                const std::function<void(std::size_t begin, std::size_t end)>& handler);

} // namespace host::bundle
