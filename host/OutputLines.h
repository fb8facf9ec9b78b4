/// The output lines of sessions as JSON objects: what a host saw and heard. They lack only the number of the
/// input that they belong to.
#pragma once

#include "host/LogLine.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

/// Adds a text under its key, or its bytes in Base64 under the key with "_base64" behind it where it is not
/// UTF-8.
void addText(boost::json::object& line, std::string_view key, std::string_view text);
/// The same, or null for a null pointer.
void addText(boost::json::object& line, std::string_view key, const char* text);

/// The text under a key; empty where there is none, or only its Base64 form.
std::string textAt(const boost::json::object& line, std::string_view key);

boost::json::object createdLine(bool hasObject);
boost::json::object resultLine(std::int32_t value);
boost::json::object resultLine(bool value);
boost::json::object noticeLine(std::string_view callbacks, std::uintptr_t handle, const char* xml);
boost::json::object stopDoneLine(std::string_view callbacks, std::uintptr_t handle);
boost::json::object apiLine(const char* operation, const char* json);
boost::json::object logLine(const LogRecord& record);

/// Whether a function of that name logs what it finds out of the machine. Sessions leave that out: they run
/// alike on every machine.
bool tellsOfTheMachine(std::string_view function);

} // namespace host
