#include "host/OutputLines.h"

#include "host/Text.h"

#include <algorithm>
#include <array>

namespace host {

namespace json = boost::json;

namespace {

/// The classes that find out what the client is, and on which machine it runs.
constexpr std::array<std::string_view, 4> identityClasses{
    "VantorDeviceID::", "CHash::", "TesselSandpiperId::", "TesselClientRetriever::"};

} // namespace

void addText(json::object& line, std::string_view key, std::string_view text) {
    if (isUtf8(text)) {
        line.emplace(key, text);
    } else {
        line.emplace(std::string(key) + "_base64", encodeBase64(text));
    }
}

void addText(json::object& line, std::string_view key, const char* text) {
    if (text == nullptr) {
        line.emplace(key, nullptr);
    } else {
        addText(line, key, std::string_view(text));
    }
}

std::string textAt(const json::object& line, std::string_view key) {
    const json::value* value = line.if_contains(key);
    return value != nullptr && value->is_string() ? std::string(value->get_string()) : std::string();
}

json::object createdLine(bool hasObject) { return {{"out", "created"}, {"object", hasObject}}; }

json::object resultLine(std::int32_t value) { return {{"out", "result"}, {"value", value}}; }

json::object resultLine(bool value) { return {{"out", "result"}, {"value", value}}; }

json::object noticeLine(std::string_view callbacks, std::uintptr_t handle, const char* xml) {
    json::object line{{"out", "notice"}, {"callbacks", callbacks}, {"handle", handle}};
    addText(line, "xml", xml);
    return line;
}

json::object stopDoneLine(std::string_view callbacks, std::uintptr_t handle) {
    return {{"out", "stop_done"}, {"callbacks", callbacks}, {"handle", handle}};
}

json::object apiLine(const char* operation, const char* json) {
    json::object line{{"out", "api"}, {"operation", operation}};
    addText(line, "json", json);
    return line;
}

json::object logLine(const LogRecord& record) {
    json::object line{{"out", "log"}, {"severity", record.severity}};
    addText(line, "function", record.function);
    addText(line, "file", record.file);
    line.emplace("line", record.line);
    addText(line, "message", record.message);
    return line;
}

bool tellsOfTheMachine(std::string_view function) {
    return std::any_of(identityClasses.begin(), identityClasses.end(),
                       [&](std::string_view name) { return function.starts_with(name); });
}

} // namespace host
