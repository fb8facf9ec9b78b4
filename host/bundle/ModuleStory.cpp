#include "host/bundle/ModuleStory.h"

#include "host/ChildProcess.h"
#include "host/OutputLines.h"
#include "host/bundle/ModuleRun.h"
#include "host/serve/LiveScreen.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/ScreenJson.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <limits>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>

namespace host::bundle {
namespace {

namespace json = boost::json;

/// How long a module may take beyond the time that it is to run.
constexpr std::chrono::seconds grace{20};

/// Adds one line of the module's run to the report. What is none was written by the module itself.
void take(ModuleReport& report, json::object line) {
    ModuleStory& story = report.story;
    const json::value* const time = line.if_contains("time");
    if (time == nullptr || !time->is_int64()) {
        return;
    }
    if (json::value* const output = line.if_contains(told::output);
        output != nullptr && output->is_object()) {
        auto entry = std::make_shared<serve::JournalEntry>();
        entry->sequence = story.entries.size() + 1;
        entry->time = time->get_int64();
        entry->line = std::move(output->get_object());
        story.entries.push_back(std::move(entry));
    } else if (line.contains(told::atEnd)) {
        story.untilEnd = story.entries;
    } else if (line.contains(told::problem)) {
        story.problem = textAt(line, told::problem);
    } else if (json::value* const module = line.if_contains(told::module)) {
        report.module = module->is_object() ? std::move(module->get_object())
                                            : json::object{{"problem", std::move(*module)}};
    }
}

std::vector<std::string> runArguments(const std::filesystem::path& module, PluginInterface way,
                                      std::optional<std::chrono::seconds> length) {
    std::vector<std::string> arguments{"run-for-bundle", module.string(), "--interface",
                                       std::string(interfaceName(way))};
    if (length) {
        arguments.insert(arguments.end(), {"--seconds", std::to_string(length->count())});
    }
    return arguments;
}

/// Why the process that ran the module did not come to its end; empty where it did.
std::string problemOf(const ChildEnd& end) {
    if (end.isOverdue) {
        return "the module did not come to an end and was given up";
    }
    if (end.crash) {
        return std::string("the module crashed: ").append(*end.crash);
    }
    return end.exitCode == 0
               ? ""
               : std::string("the module ended the process with code ").append(std::to_string(end.exitCode));
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
    const std::chrono::seconds seconds = length.value_or(std::chrono::seconds(0));
    const ChildEnd end = runChild(runArguments(module, way, length), seconds + grace);
    ModuleReport report;
    report.story.source.append("a run of ").append(std::to_string(seconds.count()));
    report.story.source.append(" seconds by wren-host");
    std::istringstream lines(end.output);
    for (std::string line; std::getline(lines, line);) {
        json::error_code error;
        const json::value value = json::parse(line, error); // the last one may be half a line
        if (!error && value.is_object()) {
            take(report, value.get_object());
        }
    }
    if (const std::string problem = problemOf(end); !problem.empty()) {
        report.story.problem = problem;
        report.module.emplace("problem", problem);
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
