#include "host/bundle/ModuleStory.h"

#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/OutputLines.h"
#include "host/PluginModule.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/ScreenJson.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>

namespace host::bundle {
namespace {

namespace json = boost::json;

constexpr const char* callbacksName = "host";
constexpr std::uintptr_t hostHandle = 1;
constexpr std::size_t all = std::numeric_limits<std::size_t>::max();

std::vector<serve::JournalEntryPointer> entriesOf(const serve::Journal& journal) {
    return journal.after(0, all).entries;
}

/// Whether an operation was done; tells of it where not.
bool isDone(std::int32_t result, std::string_view operation, std::string& problem) {
    if (result != presentationDone) {
        problem.append(operation).append(" answered ").append(std::to_string(result));
    }
    return result == presentationDone;
}

/// Runs the plugin up to its last moment.
void run(PluginObject& plugin, HostCallbacks& callbacks, HostTranslator& translator,
         std::chrono::seconds length, std::string& problem) {
    if (isDone(plugin.Register("", hostHandle, &callbacks, &translator), "Register", problem) &&
        isDone(plugin.Start(), "Start", problem)) {
        std::this_thread::sleep_for(length);
    }
}

std::string textAt(const json::object& line, std::string_view key) {
    const json::value* value = line.if_contains(key);
    return value != nullptr && value->is_string() ? std::string(value->get_string()) : std::string();
}

/// The record that an output line tells of, as far as the machine's trace needs it.
LogRecord recordOf(const json::object& line) {
    LogRecord record;
    record.function = textAt(line, "function");
    record.message = textAt(line, "message");
    return record;
}

} // namespace

ModuleStory runShortly(const std::filesystem::path& file, PluginInterface way, std::chrono::seconds length) {
    ModuleStory story;
    story.source.append("a run of ").append(std::to_string(length.count())).append(" seconds by wren-host");
    serve::Journal journal({});
    journal.setSignal([&journal] { journal.takeNew(); }); // nobody follows it
    try {
        const LogTap log([&journal](const LogRecord& record) { journal.output(logLine(record)); });
        const PluginModule module = loadModule(file, logLevels[0]);
        HostTranslator translator;
        HostCallbacks callbacks(
            [&journal](std::uintptr_t handle, const char* xml) {
                journal.output(noticeLine(callbacksName, handle, xml));
            },
            [&journal](std::uintptr_t handle) { journal.output(stopDoneLine(callbacksName, handle)); });
        const auto plugin = makePlugin(module, way);
        if (!plugin) {
            throw HostError("the module makes no plugin object");
        }
        run(*plugin, callbacks, translator, length, story.problem);
        story.untilEnd = entriesOf(journal);
        plugin->dispose(); // stops and unregisters it
    } catch (const std::exception& fault) {
        story.problem = fault.what();
    }
    story.entries = entriesOf(journal);
    if (story.untilEnd.empty()) {
        story.untilEnd = story.entries;
    }
    return story;
}

ModuleStory storyOf(const Session& session) {
    ModuleStory story;
    story.source = "the session file " + session.name;
    constexpr unsigned never = std::numeric_limits<unsigned>::max();
    unsigned end = never; // the line of the input that ended the plugin at last
    for (const SessionInput& input : session.inputs) {
        const bool isEnd = input.kind() == InputKind::Stop || input.kind() == InputKind::Dispose;
        end = input.kind() == InputKind::Start ? never : isEnd ? std::min(end, input.line()) : end;
    }
    for (const SessionExpectation& expectation : session.expectations) {
        auto entry = std::make_shared<serve::JournalEntry>();
        entry->sequence = story.entries.size() + 1;
        entry->line = expectation.output;
        if (expectation.line < end) {
            story.untilEnd.push_back(entry);
        }
        story.entries.push_back(std::move(entry));
    }
    return story;
}

json::object lastState(const ModuleStory& story) {
    serve::MachineTracker machine;
    machine.create();
    serve::LiveScreen screen({[](const serve::LiveBrowser&) { return std::string(); }, [](std::uint64_t) {}});
    for (const serve::JournalEntryPointer& entry : story.untilEnd) {
        const json::object& line = entry->line;
        const std::string word = textAt(line, "out");
        if (word == "log") {
            machine.take(recordOf(line));
        } else if (word == "notice") {
            screen.apply(textAt(line, "xml"), entry->time);
        }
    }
    const serve::MachineStates states = machine.states();
    json::object regions;
    for (const auto& [region, state] : states.regions) {
        regions.emplace(region, state);
    }
    return {{"machine", json::object{{"root", states.root}, {"regions", std::move(regions)}}},
            {"screen", screenJson(screen)}};
}

} // namespace host::bundle
