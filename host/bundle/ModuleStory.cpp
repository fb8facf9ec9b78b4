#include "host/bundle/ModuleStory.h"

#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/ModuleInfo.h"
#include "host/OutputLines.h"
#include "host/PluginModule.h"
#include "host/bundle/Apart.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/ScreenJson.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <exception>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string_view>
#include <thread>
#include <utility>

namespace host::bundle {
namespace {

namespace json = boost::json;

constexpr const char* callbacksName = "host";
constexpr std::uintptr_t hostHandle = 1;

/// How long a module may take beyond the time that it is to run.
constexpr std::chrono::seconds grace{20};

/// The lines by which a process tells of the module that it runs, and what they become in the report.
namespace word {
constexpr const char* output = "output";   ///< an output line, with "time"
constexpr const char* atEnd = "at_end";    ///< from here on the plugin is being ended
constexpr const char* problem = "problem"; ///< of the run
constexpr const char* module = "module";   ///< what the module is
} // namespace word

/// Tells of the module, line by line, as things happen.
class Teller {
public:
    explicit Teller(const LineTaker& usedTaker)
        : taker(usedTaker) {}

    void tell(const char* what, json::value value) const {
        using namespace std::chrono;
        const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
        taker(json::serialize(json::object{{what, std::move(value)}, {"time", now}}));
    }

    /// Whether an operation was done; tells of it where not.
    bool isDone(std::int32_t result, const char* operation) const {
        if (result != presentationDone) {
            std::string problem = operation;
            tell(word::problem, json::string(problem.append(" answered ").append(std::to_string(result))));
        }
        return result == presentationDone;
    }

private:
    const LineTaker& taker;
};

/// The life of a plugin.
void run(const std::filesystem::path& file, PluginInterface way, std::chrono::seconds length,
         const Teller& teller) {
    const LogTap log([&teller](const LogRecord& record) { teller.tell(word::output, logLine(record)); });
    const PluginModule module = loadModule(file, logLevels[0]);
    HostTranslator translator;
    HostCallbacks callbacks(
        [&teller](std::uintptr_t handle, const char* xml) {
            teller.tell(word::output, noticeLine(callbacksName, handle, xml));
        },
        [&teller](std::uintptr_t handle) { teller.tell(word::output, stopDoneLine(callbacksName, handle)); });
    const auto plugin = makePlugin(module, way);
    if (!plugin) {
        throw HostError("the module makes no plugin object");
    }
    if (teller.isDone(plugin->Register("", hostHandle, &callbacks, &translator), "Register") &&
        teller.isDone(plugin->Start(), "Start")) {
        std::this_thread::sleep_for(length);
    }
    teller.tell(word::atEnd, true);
    plugin->dispose(); // stops and unregisters it
}

/// Runs something, and tells under that word what keeps it from its end.
void tellOf(const Teller& teller, const char* what, const std::function<void()>& something) {
    try {
        something();
    } catch (const std::exception& fault) {
        teller.tell(what, json::string(fault.what()));
    }
}

/// Adds one line of the teller's to the report.
void take(ModuleReport& report, json::object line) {
    ModuleStory& story = report.story;
    if (json::value* const output = line.if_contains(word::output)) {
        auto entry = std::make_shared<serve::JournalEntry>();
        entry->sequence = story.entries.size() + 1;
        entry->time = line.at("time").to_number<std::int64_t>();
        entry->line = std::move(output->as_object());
        story.entries.push_back(std::move(entry));
    } else if (line.contains(word::atEnd)) {
        story.untilEnd = story.entries;
    } else if (const json::value* const problem = line.if_contains(word::problem)) {
        story.problem = problem->as_string();
    } else if (json::value* const module = line.if_contains(word::module)) {
        report.module = module->is_object() ? std::move(module->get_object())
                                            : json::object{{"problem", std::move(*module)}};
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

ModuleReport examineAndRun(const std::filesystem::path& module, PluginInterface way,
                           std::optional<std::chrono::seconds> length) {
    const ApartOutcome outcome = runApart(
        [&](const LineTaker& taker) {
            const Teller teller(taker);
            if (length) {
                tellOf(teller, word::problem, [&] { run(module, way, *length, teller); });
            }
            tellOf(teller, word::module,
                   [&] { teller.tell(word::module, jsonOf(examineModule(module, way))); });
        },
        length.value_or(std::chrono::seconds(0)) + grace);
    ModuleReport report;
    report.story.source = "a run of ";
    report.story.source +=
        std::to_string(length.value_or(std::chrono::seconds(0)).count()) + " seconds by wren-host";
    std::istringstream lines(outcome.lines);
    for (std::string line; std::getline(lines, line);) {
        json::error_code error;
        const json::value value = json::parse(line, error); // the last one may be half a line
        if (!error && value.is_object()) {
            take(report, value.get_object());
        }
    }
    if (!outcome.problem.empty()) {
        report.story.problem = outcome.problem;
        report.module.emplace("problem", outcome.problem);
    }
    if (report.story.untilEnd.empty()) {
        report.story.untilEnd = report.story.entries;
    }
    return report;
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
