#include "host/bundle/Bundle.h"

#include "host/OutputLines.h"
#include "host/Text.h"
#include "host/bundle/IndentedJson.h"
#include "host/bundle/Redaction.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace host::bundle {
namespace {

namespace chrono = std::chrono;
namespace json = boost::json;

constexpr std::size_t mostNotices = 200;
constexpr std::size_t mostLogLines = 2'000;

/// The variables that bear on module and host. The others are left out, down to their names.
constexpr std::array<const char*, 15> toldVariables{"WREN_PROGRAM_DATA",
                                                    "XDG_DATA_HOME",
                                                    "HOME",
                                                    "TZ",
                                                    "LANG",
                                                    "LC_ALL",
                                                    "LC_CTYPE",
                                                    "LC_TIME",
                                                    "TMPDIR",
                                                    "LD_LIBRARY_PATH",
                                                    "LD_PRELOAD",
                                                    "PROGRAMDATA",
                                                    "TEMP",
                                                    "SYSTEMROOT",
                                                    "PROCESSOR_ARCHITECTURE"};

/// "2026-11-21T18:31:18.042Z"
std::string timeText(chrono::system_clock::time_point time) {
    const auto day = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(chrono::floor<chrono::milliseconds>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return text;
}

/// The last outputs of that kind, with their times where they have any. What is logged of the machine's
/// identity is left out, as it is of sessions.
std::vector<json::object> lastOf(const ModuleStory& story, std::string_view kind, std::size_t most) {
    std::vector<json::object> lines;
    for (auto entry = story.entries.rbegin(); entry != story.entries.rend() && lines.size() < most; ++entry) {
        const json::object& output = (*entry)->line;
        if (textAt(output, "out") != kind || tellsOfTheMachine(textAt(output, "function"))) {
            continue;
        }
        json::object line;
        if ((*entry)->time != 0) {
            line.emplace("time",
                         timeText(chrono::system_clock::time_point(chrono::milliseconds((*entry)->time))));
        }
        line.insert(output.begin(), output.end());
        lines.push_back(std::move(line));
    }
    std::reverse(lines.begin(), lines.end());
    return lines;
}

/// The last lines of a text, one object each.
std::vector<json::object> lastLines(std::string_view text, std::size_t most) {
    std::vector<json::object> lines;
    while (!text.empty() && lines.size() < most) {
        text.remove_suffix(text.ends_with('\n') ? 1 : 0);
        const std::size_t begin = text.rfind('\n') + 1; // 0 where there is none
        json::object line;
        const std::string_view last = text.substr(begin);
        addText(line, "message", last.substr(0, last.size() - (last.ends_with('\r') ? 1 : 0)));
        lines.push_back(std::move(line));
        text = text.substr(0, begin);
    }
    std::reverse(lines.begin(), lines.end());
    return lines;
}

std::string plainLines(const std::vector<json::object>& lines) {
    std::string text;
    for (const json::object& line : lines) {
        text.append(printable(textAt(line, line.contains("message") ? "message" : "message_base64")))
            .append("\n");
    }
    return text;
}

/// Log records, one a line, whatever they say: "TIME S FUNCTION FILE:LINE MESSAGE".
std::string logText(const std::vector<json::object>& records) {
    constexpr std::string_view marks = "TIWE";
    std::string text;
    for (const json::object& record : records) {
        const json::value* severity = record.if_contains("severity");
        const json::value* number = record.if_contains("line");
        const auto mark = severity != nullptr && severity->is_int64() ? severity->get_int64() : -1;
        const std::string time = textAt(record, "time");
        text.append(time).append(time.empty() ? "" : " ");
        text += mark >= 0 && mark < 4 ? marks[static_cast<std::size_t>(mark)] : '?';
        text.append(" ")
            .append(printable(textAt(record, "function")))
            .append(" ")
            .append(printable(textAt(record, "file")))
            .append(":");
        text.append(number != nullptr ? json::serialize(*number) : "0")
            .append(" ")
            .append(printable(textAt(record, "message")));
        text += "\n";
    }
    return text;
}

std::string jsonLines(const std::vector<json::object>& lines) {
    std::string text;
    for (const json::object& line : lines) {
        text.append(json::serialize(line)).append("\n");
    }
    return text;
}

json::object environmentOf(const SystemFacts& facts) {
    json::object told;
    std::size_t leftOut = facts.environment.size();
    for (const char* const name : toldVariables) {
        const auto variable = facts.environment.find(name);
        if (variable != facts.environment.end()) {
            addText(told, name, variable->second);
            --leftOut;
        }
    }
    return {{"variables", std::move(told)}, {"left_out", leftOut}};
}

json::object versionsOf(const Findings& findings) {
    return {{"collected", timeText(findings.time)},
            {"wren_host", WREN_HOST_VERSION},
            {"system", findings.system.system},
            {"module", textAt(findings.module, "display_version")}};
}

/// What is in the bundle, for whoever opens it.
std::string readme(const Bundle& bundle, const Findings& findings, const std::string& problem) {
    std::string text = "A diagnostic bundle of the Wren Gate presentation plugin, collected ";
    text.append(timeText(findings.time)).append(".\n\n");
    for (std::size_t i = 0; i < bundle.files.size(); ++i) {
        text.append("  ")
            .append(bundle.files[i].name)
            .append(20 - std::min<std::size_t>(19, bundle.files[i].name.size()), ' ');
        text.append(bundle.summaries[i]).append("\n");
    }
    text.append("\nNotices, log and state come from ").append(printable(findings.story.source)).append(".\n");
    if (!problem.empty()) {
        text.append("There was a problem: ").append(printable(problem)).append(".\n");
    }
    text.append("\nReplaced, the same secret by the same name everywhere: ")
        .append(bundle.replaced)
        .append(".\n");
    return text.append("What the log tells of the identity of device and client is left out.\n");
}

} // namespace

Bundle makeBundle(Findings findings) {
    json::object state = lastState(findings.story);
    state.insert_or_assign("problem", findings.story.problem);
    state.insert_or_assign("source", findings.story.source);
    json::object versions = versionsOf(findings);
    json::object environment = environmentOf(findings.system);
    std::vector<json::object> notices = lastOf(findings.story, "notice", mostNotices);
    std::vector<json::object> log = lastOf(findings.story, "log", mostLogLines);
    std::vector<json::object> systemLog = lastLines(findings.systemLog, mostLogLines);

    std::vector<json::object*> objects{&versions, &findings.module, &state, &findings.configuration,
                                       &environment};
    for (auto* const lines : {&notices, &log, &systemLog}) {
        std::transform(lines->begin(), lines->end(), std::back_inserter(objects),
                       [](auto& line) { return &line; });
    }
    Bundle bundle;
    bundle.replaced = redactAll(objects, findings.system);
    findings.story.source = textAt(state, "source");

    const auto add = [&bundle](const char* name, std::string content, const char* summary) {
        bundle.files.push_back({name, std::move(content)});
        bundle.summaries.emplace_back(summary);
    };
    add("versions.json", indentedJson(versions), "versions of module, host and system");
    add("module.json", indentedJson(findings.module),
        "what the module is and offers, or why it does not tell");
    add("state.json", indentedJson(state),
        "the machine's states and the screen, before the plugin was stopped");
    add("notices.jsonl", jsonLines(notices), "the last notices, 200 at most");
    add("log.txt", logText(log), "the last log lines, 2000 at most");
    if (!systemLog.empty()) {
        add("system-log.txt", plainLines(systemLog), "the last lines that the system has kept, 2000 at most");
    }
    add("configuration.json", indentedJson(findings.configuration),
        "how much the module is to log: logconfig.json");
    add("environment.json", indentedJson(environment), "variables that bear on module and host");
    bundle.files.insert(bundle.files.begin(),
                        {"README.txt", readme(bundle, findings, textAt(state, "problem"))});
    bundle.summaries.insert(bundle.summaries.begin(), "what is in here");
    return bundle;
}

} // namespace host::bundle
