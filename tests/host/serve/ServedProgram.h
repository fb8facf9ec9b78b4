/// The program as it serves, and those who speak to it.
#pragma once

#include "tests/host/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <boost/asio/io_context.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test {

using HttpRequest = boost::beast::http::request<boost::beast::http::string_body>;
using HttpResponse = boost::beast::http::response<boost::beast::http::string_body>;
/// The popup of the login.
inline constexpr const char* enrollDialog = "quill_enrollment_browser_dialog";

using Headers = std::vector<std::pair<std::string, std::string>>;

/// An installed program in a folder of its own, running.
class ServedProgram {
public:
    /// Starts it and waits for its address. @param arguments behind "serve"
    explicit ServedProgram(std::vector<std::string> arguments = {});
    ServedProgram(const ServedProgram&) = delete;
    ServedProgram& operator=(const ServedProgram&) = delete;
    ~ServedProgram() = default;

    const std::string& address() const { return ownAddress; }
    unsigned short port() const;
    /// "127.0.0.1:PORT"
    std::string host() const { return "127.0.0.1:" + std::to_string(port()); }
    /// The path of the address, with both slashes.
    std::string root() const;

    /// Asks it to end, as a user or as the system does, and waits. @return its exit code; -1 where it was
    /// ended by a signal
    int interrupt();
    int terminate();
    /// Waits for its end. @return its exit code
    int wait() { return process->finish().exitCode; }

    /// @param target whole, as in the first line of a request
    HttpResponse ask(const std::string& method, const std::string& target, const std::string& body = {},
                     const Headers& headers = {}) const;
    /// @param path below the root
    HttpResponse get(const std::string& path) const { return ask("GET", root() + path); }

    /// Sends bytes and reads what comes until the end. @return all of it
    std::string exchange(const std::string& bytes) const;

private:
    void install();
    void launch(std::vector<std::string> arguments);

    const TemporaryFolder folder;
    std::optional<Process> process;
    std::string ownAddress;
};

/// A viewer's socket. Keeps the latest picture of each kind and all entries.
class ViewerClient {
public:
    /// @throws boost::system::system_error where the server refuses
    explicit ViewerClient(const ServedProgram& program);
    ViewerClient(const ServedProgram& program, const std::string& origin);

    boost::json::object hello;

    /// Reads one message.
    boost::json::object read();
    void send(const std::string& message);
    /// Sends a request, gives it an id, and reads up to the answer. @return its error; empty: it worked
    std::string request(const std::string& fields);
    /// Reads until the pictures and entries seen so far satisfy.
    void readUntil(const std::function<bool()>& isEnough);

    const boost::json::object& screen() const { return pictures.at("screen").at("screen").get_object(); }
    const boost::json::object& machine() const { return pictures.at("machine"); }
    const boost::json::object& service() const { return pictures.at("service").at("state").get_object(); }
    bool has(const std::string& picture) const { return pictures.contains(picture); }
    /// A control of the tile, null where there is none.
    const boost::json::object* control(const std::string& id) const;
    std::string tileText() const;
    /// The browser of an open popup; null where there is none.
    const boost::json::object* browser(const std::string& popup) const;
    /// The state of a region, or of the root for "root".
    std::string state(const std::string& region) const;

    /// Whether an entry holds the text.
    bool hasEntry(const std::string& text) const;

    std::vector<boost::json::object> entries;
    std::uint64_t missed = 0;

    using Socket = boost::beast::websocket::stream<boost::beast::tcp_stream>;
    Socket& stream() { return socket; }

private:
    void take(boost::json::object message);

    boost::asio::io_context context;
    Socket socket{context};
    boost::beast::flat_buffer buffer;
    std::map<std::string, boost::json::object> pictures;
    unsigned lastId = 0;
};

} // namespace test
