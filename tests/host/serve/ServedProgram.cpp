#include "tests/host/serve/ServedProgram.h"

#include "tests/host/Paths.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include "host/LibraryNames.h"

#include <fstream>

namespace test {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace fs = std::filesystem;
namespace http = beast::http;
namespace json = boost::json;
using asio::ip::tcp;

/// Puts a built file where it is wanted; a link takes no time, but does not lead everywhere.
void place(const fs::path& built, const fs::path& wanted) {
    fs::create_directories(wanted.parent_path());
    std::error_code error;
    fs::create_hard_link(built, wanted, error);
    if (error) {
        fs::copy_file(built, wanted);
    }
}

tcp::endpoint endpointOf(const ServedProgram& program) {
    return {asio::ip::address_v4::loopback(), program.port()};
}

} // namespace

ServedProgram::ServedProgram(std::vector<std::string> arguments) {
    install();
    launch(std::move(arguments));
}

/// Lays everything out as an installed program has it.
void ServedProgram::install() {
    const fs::path& root = folder.path();
    const fs::path share = root / "share/wren-host";
    const fs::path program = hostProgram;
    for (const fs::path& file :
         {program, fs::path(backendLibrary), host::moduleBeside(program.parent_path())}) {
        const fs::path built = file.lexically_normal();
        place(built, root / built.lexically_relative(program.parent_path().parent_path()));
    }
    folder.write(share / "app/index.html", "<!doctype html><title>the page</title>");
    folder.write(share / "app/page.js", "export {};");
    folder.write(share / "app/machine.json", R"({"states": []})");
    folder.write(share / "pages/wren/v1/index.html", "<!doctype html><title>the local page</title>");
    folder.write(share / "scenario.schema.json", R"({"title": "a schema"})");
}

void ServedProgram::launch(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "serve");
    process.emplace(ProcessPlan{.program = folder.path() / "bin" / fs::path(hostProgram).filename(),
                                .arguments = std::move(arguments)});
    const std::string& out = process->waitForOutput("\n");
    ownAddress = out.substr(0, out.find('\n'));
}

unsigned short ServedProgram::port() const {
    return static_cast<unsigned short>(std::stoi(ownAddress.substr(ownAddress.rfind(':') + 1)));
}

std::string ServedProgram::root() const {
    return ownAddress.substr(ownAddress.find('/', ownAddress.rfind(':')));
}

int ServedProgram::interrupt() {
    process->interrupt();
    return wait();
}

int ServedProgram::terminate() {
    process->terminate();
    return wait();
}

HttpResponse ServedProgram::ask(const std::string& method, const std::string& target, const std::string& body,
                                const Headers& headers) const {
    asio::io_context context;
    beast::tcp_stream stream(context);
    stream.connect(endpointOf(*this));
    HttpRequest request;
    request.method_string(method);
    request.target(target);
    request.version(11);
    request.set(http::field::host, host());
    for (const auto& [name, value] : headers) {
        request.set(name, value);
    }
    request.body() = body;
    request.prepare_payload();
    http::write(stream, request);
    beast::flat_buffer buffer;
    http::response_parser<http::string_body> parser;
    parser.skip(method == "HEAD");
    http::read(stream, buffer, parser);
    return parser.release();
}

std::string ServedProgram::exchange(const std::string& bytes) const {
    asio::io_context context;
    tcp::socket socket(context);
    socket.connect(endpointOf(*this));
    boost::system::error_code error;
    asio::write(socket, asio::buffer(bytes), error);
    std::string answer;
    asio::read(socket, asio::dynamic_buffer(answer), error);
    return answer;
}

ViewerClient::ViewerClient(const ServedProgram& program)
    : ViewerClient(program, "http://" + program.host()) {}

ViewerClient::ViewerClient(const ServedProgram& program, const std::string& origin) {
    beast::get_lowest_layer(socket).connect(endpointOf(program));
    socket.set_option(beast::websocket::stream_base::decorator([&](beast::websocket::request_type& request) {
        if (!origin.empty()) {
            request.set(http::field::origin, origin);
        }
    }));
    socket.read_message_max(std::size_t{64} << 20);
    socket.handshake(program.host(), program.root() + "live");
    hello = read();
}

json::object ViewerClient::read() {
    socket.read(buffer);
    json::object message = json::parse(beast::buffers_to_string(buffer.data())).as_object();
    buffer.consume(buffer.size());
    take(message);
    return message;
}

void ViewerClient::take(json::object message) {
    const std::string type = message.at("type").as_string().c_str();
    if (const json::value* more = message.if_contains("entries")) {
        for (const json::value& entry : more->as_array()) {
            entries.push_back(entry.as_object());
        }
    }
    if (const json::value* number = message.if_contains("missed")) {
        missed += number->to_number<std::uint64_t>();
    }
    pictures.insert_or_assign(type, std::move(message));
}

void ViewerClient::send(const std::string& message) { socket.write(asio::buffer(message)); }

std::string ViewerClient::request(const std::string& fields) {
    const unsigned id = ++lastId;
    send("{\"id\":" + std::to_string(id) + "," + fields + "}");
    while (true) {
        const json::object message = read();
        if (message.at("type") == "reply" && message.at("id") == id) {
            const json::value* error = message.if_contains("error");
            return error != nullptr ? error->as_string().c_str() : "";
        }
    }
}

void ViewerClient::readUntil(const std::function<bool()>& isEnough) {
    while (!isEnough()) {
        read();
    }
}

const json::object* ViewerClient::control(const std::string& id) const {
    if (!has("screen")) {
        return nullptr;
    }
    for (const json::value& part : screen().at("parts").as_array()) {
        for (const json::value& control : part.at("controls").as_array()) {
            if (control.at("id").as_string() == id) {
                return &control.as_object();
            }
        }
    }
    return nullptr;
}

std::string ViewerClient::tileText() const {
    const json::object* status = control("simple_status");
    return status != nullptr ? status->at("attributes").at("value").as_string().c_str() : "";
}

const json::object* ViewerClient::browser(const std::string& popup) const {
    if (has("screen")) {
        for (const json::value& open : screen().at("popups").as_array()) {
            if (open.at("id").as_string() == popup) {
                return open.at("browser").if_object();
            }
        }
    }
    return nullptr;
}

std::string ViewerClient::state(const std::string& region) const {
    if (!has("machine")) {
        return {};
    }
    const json::value* state = region == "root" ? machine().if_contains("root")
                                                : machine().at("regions").as_object().if_contains(region);
    return state != nullptr ? state->as_string().c_str() : "";
}

bool ViewerClient::hasEntry(const std::string& text) const {
    for (const json::object& entry : entries) {
        if (json::serialize(entry).find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

} // namespace test
