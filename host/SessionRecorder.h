/// Writes a session as it happens.
#pragma once

#include "host/LogLine.h"
#include "host/SessionInput.h"
#include "wren/Plugin.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace boost::json {
class object;
class value;
} // namespace boost::json

namespace host {

/// Writes each input and, behind it, what came of it, one JSON object a line, each complete in the stream
/// before the call returns. Outputs may come from any thread; what comes before the first input or after the
/// end is dropped.
class SessionRecorder {
public:
    /// @param stream must outlive the recorder and is written by nobody else meanwhile
    explicit SessionRecorder(std::ostream& stream)
        : out(stream) {}

    /// The next input begins. What comes from now on is its output.
    void input(const SessionInput& input);
    /// No output after this belongs to the session.
    void end();

    void interfaces(const PluginInterfaceList& list);
    void created(bool hasObject);
    void result(std::int32_t value);
    void result(bool value);
    /// Of a text getter, with the size after the call and the text, if it was copied.
    void result(std::int32_t value, std::uint32_t size, const std::optional<std::string>& text);
    /// Of "Decrypt", with the size after the call and the first byte of the output, if there was one.
    void decrypted(std::int32_t value, std::uint32_t size, const std::optional<unsigned char>& firstByte);
    void notice(std::string_view callbacks, std::uintptr_t handle, const char* xml);
    void stopDone(std::string_view callbacks, std::uintptr_t handle);
    void apiCall(const char* operation, const char* json);
    /// What is logged of the machine's identity is left out: a session runs alike on every machine.
    void log(const LogRecord& record);

private:
    /// Writes an output line, which lacks its number.
    void output(const boost::json::object& fields);
    void write(const std::string& line);

    std::ostream& out;
    std::mutex mutex;
    unsigned number = 0; ///< of the input that runs, from 1
    bool isRunning = false;
};

} // namespace host
