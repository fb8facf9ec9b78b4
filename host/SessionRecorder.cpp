#include "host/SessionRecorder.h"

#include "host/Text.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <array>

namespace host {
namespace {

namespace json = boost::json;

/// Adds a text, or its bytes in Base64 where it is not UTF-8, or null.
void addText(json::object& line, std::string_view key, const char* text) {
    if (text == nullptr) {
        line.emplace(key, nullptr);
    } else if (isUtf8(text)) {
        line.emplace(key, text);
    } else {
        line.emplace(std::string(key) + "_base64", encodeBase64(text));
    }
}

void addText(json::object& line, std::string_view key, const std::string& text) {
    if (isUtf8(text)) {
        line.emplace(key, text);
    } else {
        line.emplace(std::string(key) + "_base64", encodeBase64(text));
    }
}

/// The classes that find out what the client is, and on which machine it runs.
constexpr std::array<std::string_view, 4> identityClasses{
    "VantorDeviceID::", "CHash::", "TesselSandpiperId::", "TesselClientRetriever::"};

bool tellsOfTheMachine(const LogRecord& record) {
    return std::ranges::any_of(identityClasses,
                               [&](std::string_view name) { return record.function.starts_with(name); });
}

} // namespace

template <class Fill>
void SessionRecorder::output(std::string_view word, Fill fill) {
    const std::lock_guard lock(mutex);
    if (!isRunning) {
        return;
    }
    json::object line{{"n", number}, {"out", word}};
    fill(line);
    write(json::serialize(line));
}

void SessionRecorder::write(const std::string& line) { out << line << '\n' << std::flush; }

void SessionRecorder::input(const SessionInput& input) {
    const std::lock_guard lock(mutex);
    isRunning = true;
    ++number;
    write(input.json());
}

void SessionRecorder::end() {
    const std::lock_guard lock(mutex);
    isRunning = false;
}

void SessionRecorder::interfaces(const PluginInterfaceList& list) {
    output("interfaces", [&](json::object& line) {
        json::array entries;
        for (std::int32_t i = 0; i < list.count; ++i) {
            json::object entry;
            addText(entry, "name", list.entries[i].name);
            entry.emplace("version", list.entries[i].version);
            entries.push_back(std::move(entry));
        }
        line.emplace("entries", std::move(entries));
    });
}

void SessionRecorder::created(bool hasObject) {
    output("created", [&](json::object& line) { line.emplace("object", hasObject); });
}

void SessionRecorder::result(std::int32_t value) {
    output("result", [&](json::object& line) { line.emplace("value", value); });
}

void SessionRecorder::result(bool value) {
    output("result", [&](json::object& line) { line.emplace("value", value); });
}

void SessionRecorder::result(std::int32_t value, std::uint32_t size, const std::optional<std::string>& text) {
    output("result", [&](json::object& line) {
        line.emplace("value", value);
        line.emplace("size", size);
        addText(line, "text", text ? text->c_str() : nullptr);
    });
}

void SessionRecorder::decrypted(std::int32_t value, std::uint32_t size,
                                const std::optional<unsigned char>& firstByte) {
    output("result", [&](json::object& line) {
        line.emplace("value", value);
        line.emplace("size", size);
        line.emplace("first_byte", firstByte ? json::value(*firstByte) : json::value(nullptr));
    });
}

void SessionRecorder::notice(std::string_view callbacks, std::uintptr_t handle, const char* xml) {
    output("notice", [&](json::object& line) {
        line.emplace("callbacks", callbacks);
        line.emplace("handle", handle);
        addText(line, "xml", xml);
    });
}

void SessionRecorder::stopDone(std::string_view callbacks, std::uintptr_t handle) {
    output("stop_done", [&](json::object& line) {
        line.emplace("callbacks", callbacks);
        line.emplace("handle", handle);
    });
}

void SessionRecorder::apiCall(const char* operation, const char* json) {
    output("api", [&](json::object& line) {
        line.emplace("operation", operation);
        addText(line, "json", json);
    });
}

void SessionRecorder::log(const LogRecord& record) {
    if (tellsOfTheMachine(record)) {
        return;
    }
    output("log", [&](json::object& line) {
        line.emplace("severity", record.severity);
        addText(line, "function", record.function);
        addText(line, "file", record.file);
        line.emplace("line", record.line);
        addText(line, "message", record.message);
    });
}

} // namespace host
