#include "host/bundle/IndentedJson.h"

#include <boost/json/serialize.hpp>

namespace host::bundle {
namespace {

namespace json = boost::json;

void append(std::string& text, const json::value& value, std::size_t depth);

void startLine(std::string& text, std::size_t depth) { text.append("\n").append(2 * depth, ' '); }

void appendObject(std::string& text, const json::object& object, std::size_t depth) {
    const char* mark = "{";
    for (const auto& member : object) {
        text += mark;
        mark = ",";
        startLine(text, depth + 1);
        text.append(json::serialize(json::value(member.key()))).append(": ");
        append(text, member.value(), depth + 1);
    }
    startLine(text, depth);
    text += "}";
}

void appendArray(std::string& text, const json::array& array, std::size_t depth) {
    const char* mark = "[";
    for (const json::value& element : array) {
        text += mark;
        mark = ",";
        startLine(text, depth + 1);
        append(text, element, depth + 1);
    }
    startLine(text, depth);
    text += "]";
}

void append(std::string& text, const json::value& value, std::size_t depth) {
    if (value.is_object() && !value.get_object().empty()) {
        appendObject(text, value.get_object(), depth);
    } else if (value.is_array() && !value.get_array().empty()) {
        appendArray(text, value.get_array(), depth);
    } else {
        text += json::serialize(value);
    }
}

} // namespace

std::string indentedJson(const json::value& value) {
    std::string text;
    append(text, value, 0);
    return text += "\n";
}

} // namespace host::bundle
