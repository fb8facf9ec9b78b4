#include "tests/module/ModuleSession.h"

#include "host/BackendControls.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"
#include "host/SessionRunner.h"
#include "host/TimeZone.h"
#include "host/strict/StrictHost.h"
#include "tests/support/XmlTree.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <mutex>
#include <sstream>

namespace test {
namespace {

/// What the whole process shares: the module stays loaded from the first test to the last.
struct LoadedModule {
    static LoadedModule& instance() {
        static LoadedModule loaded;
        return loaded;
    }

    struct Utc {
        Utc() { host::setTimeZone("UTC"); }
    } utc;
    host::LogLevelFolder logLevel{"DBG_TRACE"};
    host::PluginModule module{host::defaultModulePath()};
    host::BackendControls backend;
};

std::string quoted(std::string_view text) { return boost::json::serialize(boost::json::string(text)); }

std::string textAt(const boost::json::object& object, std::string_view key) {
    const boost::json::value* value = object.if_contains(key);
    if (!value) {
        return "";
    }
    return value->is_string() ? std::string(value->get_string()) : boost::json::serialize(*value);
}

/// The value of an attribute in the element that begins at `from`.
std::string attributeIn(const std::string& xml, const std::string& name, std::size_t from = 0) {
    const std::string begin = " " + name + "=\"";
    const std::size_t end = xml.find('>', from);
    const std::size_t at = xml.find(begin, from);
    if (at == std::string::npos || at > end) {
        return "";
    }
    return xml.substr(at + begin.size(), xml.find('"', at + begin.size()) - at - begin.size());
}

/// The value of an attribute of the element with that id.
std::string attributeOf(const std::string& xml, const std::string& id, const std::string& name) {
    const std::size_t at = xml.find(" id=\"" + id + "\"");
    return at == std::string::npos ? "" : attributeIn(xml, name, xml.rfind('<', at));
}

std::string tileInShort(const std::string& xml) {
    std::string buttons;
    for (const std::string name : {"Enroll", "Cancel", "Details", "Verify"}) {
        std::string id = "quill_tile_" + name + "_action_btn";
        std::transform(id.begin(), id.end(), id.begin(),
                       [](char c) { return static_cast<char>(std::tolower(c)); });
        if (attributeOf(xml, id, "hidden") == "false") {
            buttons += (buttons.empty() ? "" : " ") + name;
            buttons += attributeOf(xml, id, "disabled") == "true" ? "-" : "";
        }
    }
    return "tile " + attributeIn(xml, "type") + " " + attributeIn(xml, "state") + " \"" +
           attributeOf(xml, "simple_status", "value") + "\" \"" +
           attributeOf(xml, "tray_state_string", "value") + "\" [" + buttons + "]";
}

std::string popupInShort(const std::string& xml) {
    const std::size_t popup = xml.find("<popup ");
    const std::string id = attributeIn(xml, "id", popup);
    if (attributeIn(xml, "dispose", popup) == "true") {
        return "dispose " + id;
    }
    const std::size_t button = xml.find("<button ");
    if (id == "wren_toast_popup") {
        return "toast \"" + attributeIn(xml, "value", xml.find("<title ")) + "\" \"" +
               attributeIn(xml, "value", xml.find("<text ")) + "\"" +
               (button == std::string::npos ? "" : " " + attributeIn(xml, "id", button));
    }
    const std::size_t browser = xml.find("<webbrowser ");
    return "popup " + id + (browser == std::string::npos ? "" : " " + attributeIn(xml, "operation", browser));
}

std::string screenInShort(const std::string& xml) {
    const std::string type = attributeIn(xml, "type");
    const auto has = [&](std::string_view part) { return xml.find(part) != std::string::npos; };
    if (type == "apilog") {
        const std::size_t element = xml.find('<', 1) + 1;
        return "apilog " + xml.substr(element, xml.find_first_of(" >/", element) - element);
    }
    if (type == "popup") {
        return popupInShort(xml);
    }
    if (has("\"simple_status\"")) {
        return tileInShort(xml);
    }
    if (has("\"quill_adv_unenroll_btn\"")) {
        return "adv-enrollment " + type + " " +
               (attributeOf(xml, "quill_adv_unenroll_btn", "disabled") == "true" ? "disabled" : "enabled") +
               (attributeOf(xml, "quill_adv_unenroll_managed_label", "hidden") == "true" ? "" : " managed");
    }
    if (has("\"quill_config_sync_btn\"")) {
        return "adv-sync " + type + " " +
               (attributeOf(xml, "quill_config_sync_btn", "disabled") == "true" ? "disabled" : "enabled") +
               " \"" + attributeOf(xml, "quill_config_sync_last_sync_label", "value") + "\"";
    }
    if (has("\"overview_stat_outlinelistbox\"")) {
        return "stats-overview " + type;
    }
    if (has("\"stat_outlinelistbox\"")) {
        return "stats-details " + type;
    }
    return has("<application show=\"false\"/>")
               ? "hide-window"
               : "history " + attributeIn(xml, "messagehistory", xml.find("<log "));
}

} // namespace

struct ModuleSession::State {
    explicit State(std::optional<host::PluginInterface> onlyInterface)
        : runner(LoadedModule::instance().module, LoadedModule::instance().backend, recorder, onlyInterface,
                 &strict) {}

    std::ostringstream stream;
    host::SessionRecorder recorder{stream};
    host::LogTap log{[this](const host::LogRecord& record) { recorder.log(record); }};
    std::mutex mutex;
    Lines broken;
    host::StrictHost strict{[this](const host::Violation& violation) {
        const std::lock_guard lock(mutex);
        broken.push_back(lineOf(violation));
    }};
    host::SessionRunner runner;
    std::vector<boost::json::object> outputs;
};

ModuleSession::ModuleSession(std::optional<host::PluginInterface> onlyInterface) {
    LoadedModule::instance();
    state = std::make_unique<State>(onlyInterface);
}

ModuleSession::~ModuleSession() { LoadedModule::instance().backend.reset(); }

Lines ModuleSession::run(std::string_view inputs) {
    state->stream.str("");
    state->runner.run(host::parseSession(inputs, "test"));
    state->outputs.clear();
    Lines lines;
    std::istringstream written(state->stream.str());
    for (std::string line; std::getline(written, line);) {
        boost::json::object object = boost::json::parse(line).as_object();
        if (object.contains("out")) {
            lines.push_back(inShort(object));
            state->outputs.push_back(std::move(object));
        }
    }
    return lines;
}

Lines ModuleSession::brokenRules() const {
    const std::lock_guard lock(state->mutex);
    return state->broken;
}

const std::vector<boost::json::object>& ModuleSession::outputs() const { return state->outputs; }

void ModuleSession::start() {
    run(R"({"do":"create","name":"com.norvane.vantor.presentation"}
{"do":"register","arguments":"","callbacks":"host","translator":true,"handle":7}
{"do":"start"})");
}

Lines ModuleSession::deliver(std::string_view document, std::string_view json) {
    return run(R"({"do":"deliver","document":")" + std::string(document) + R"(","json":)" + quoted(json) +
               "}");
}

Lines ModuleSession::event(std::string_view xml) {
    return run(R"({"do":"event","xml":)" + quoted(xml) + "}");
}

Lines ModuleSession::press(std::string_view control) {
    return event("<vtguiEvent id=\"" + std::string(control) + "_OnPress\"/>");
}

std::string inShort(const boost::json::object& output) {
    const std::string word = textAt(output, "out");
    if (word == "log") {
        return "log " + textAt(output, "severity") + " " + textAt(output, "function") + ": " +
               textAt(output, "message");
    }
    if (word == "notice") {
        return "notice " + maskTimestamps(textAt(output, "xml"));
    }
    if (word == "api") {
        const std::string json = textAt(output, "json");
        return "api " + textAt(output, "operation") + (json == "null" ? "" : " " + json);
    }
    if (word == "created") {
        return "created " + textAt(output, "object");
    }
    if (word == "result") {
        std::string text = "result " + textAt(output, "value");
        for (const std::string key : {"size", "text", "first_byte"}) {
            text += output.contains(key) ? " " + key + " " + textAt(output, key) : "";
        }
        return text;
    }
    return word == "interfaces" ? word + " " + textAt(output, "entries") : word;
}

Lines withoutTrace(const Lines& lines) {
    Lines kept;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept), [](const std::string& line) {
        return line.find("log 0 QuillSmlLogger_t::") != 0 &&
               line.find(": state machine action ") == std::string::npos;
    });
    return kept;
}

Lines only(std::string_view word, const Lines& lines) {
    Lines kept;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept), [&](const std::string& line) {
        return line.substr(0, word.size() + 1) == std::string(word) + " ";
    });
    return kept;
}

Lines screens(const Lines& lines) {
    Lines shown;
    for (const std::string& line : only("notice", lines)) {
        shown.push_back(screenInShort(line.substr(std::string_view("notice ").size())));
    }
    return shown;
}

} // namespace test
