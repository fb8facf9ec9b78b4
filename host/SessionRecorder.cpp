#include "host/SessionRecorder.h"

#include "host/OutputLines.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

namespace host {

namespace json = boost::json;

void SessionRecorder::output(const boost::json::object& fields) {
    const std::lock_guard lock(mutex);
    if (!isRunning) {
        return;
    }
    json::object line{{"n", number}};
    line.insert(fields.begin(), fields.end());
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
    json::array entries;
    for (std::int32_t i = 0; i < list.count; ++i) {
        json::object entry;
        addText(entry, "name", list.entries[i].name);
        entry.emplace("version", list.entries[i].version);
        entries.push_back(std::move(entry));
    }
    output({{"out", "interfaces"}, {"entries", std::move(entries)}});
}

void SessionRecorder::created(bool hasObject) { output(createdLine(hasObject)); }

void SessionRecorder::result(std::int32_t value) { output(resultLine(value)); }

void SessionRecorder::result(bool value) { output(resultLine(value)); }

void SessionRecorder::result(std::int32_t value, std::uint32_t size, const std::optional<std::string>& text) {
    json::object line = resultLine(value);
    line.emplace("size", size);
    addText(line, "text", text ? text->c_str() : nullptr);
    output(line);
}

void SessionRecorder::decrypted(std::int32_t value, std::uint32_t size,
                                const std::optional<unsigned char>& firstByte) {
    json::object line = resultLine(value);
    line.emplace("size", size);
    line.emplace("first_byte", firstByte ? json::value(*firstByte) : json::value(nullptr));
    output(line);
}

void SessionRecorder::notice(std::string_view callbacks, std::uintptr_t handle, const char* xml) {
    output(noticeLine(callbacks, handle, xml));
}

void SessionRecorder::stopDone(std::string_view callbacks, std::uintptr_t handle) {
    output(stopDoneLine(callbacks, handle));
}

void SessionRecorder::apiCall(const char* operation, const char* json) { output(apiLine(operation, json)); }

void SessionRecorder::log(const LogRecord& record) {
    if (!tellsOfTheMachine(record.function)) {
        output(logLine(record));
    }
}

} // namespace host
