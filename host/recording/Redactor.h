/// Takes secrets out of sessions.
#pragma once

#include <boost/json/object.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace host {

/// Replaces cookies, the values that browsers report in events, and the queries of URLs, each by a name of
/// its own ("redacted-1", "redacted-2", ...) wherever it shows: as it is, as XML and JSON spell it, and
/// inside Base64. The same secret gets the same name everywhere, so that a session still plays alike.
///
/// A secret may show before the line that tells that it is one: all lines are learnt before the first is
/// redacted. Values of less than four bytes, which are words of any text, go only where they are known to
/// stand and out of log messages; those of less than six only where they stand as a word.
class Redactor {
public:
    /// Takes note of the secrets that an input or output line holds.
    void learn(const boost::json::object& line);
    /// Replaces them in a line.
    void redact(boost::json::object& line);

private:
    enum class Spelling { Xml, Json, Message };
    struct Place {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool isXml = false;
        bool isKept = false; ///< whether what stands there is looked for elsewhere as well
    };

    static Spelling spellingOf(std::string_view key);
    static bool findPlace(std::string_view text, std::size_t from, bool isEvent, Place& place);
    const std::string& nameOf(const std::string& secret);
    std::string redacted(std::string text, Spelling spelling, bool isEvent);
    void redactPlaces(std::string& text, bool isEvent);
    void redactKnown(std::string& text, Spelling spelling) const;
    void redactQueries(std::string& text, Spelling spelling);
    void redactBase64(std::string& text);

    std::map<std::string, std::string> names;  ///< of all secrets
    std::map<std::string, std::string> spread; ///< of those that are looked for everywhere
};

} // namespace host
