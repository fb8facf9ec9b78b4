/// Reading the few values that one wants out of a JSON text.
#pragma once

#include <boost/json/value.hpp>

#include <map>
#include <string>
#include <string_view>

/// One parsed JSON value with lookups by key. What is not there, or is of another type, reads as empty.
class JsonLookup {
public:
    /// @param error takes the parser's words, after one line in the log; empty if the text is JSON
    JsonLookup(std::string_view text, std::string& error);

    /// The text under that key.
    std::string GetString(std::string_view key) const;
    /// The texts of the object under that key; its members of other types are left out.
    std::map<std::string, std::string> GetStringMap(std::string_view key) const;

private:
    const boost::json::value* find(std::string_view key) const;

    boost::json::value root;
};
